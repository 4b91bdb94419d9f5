"""shots.py PAGE FOLDER: pictures of a page: on a wide screen in light, on a narrow one in dark, and printed."""

import os
import subprocess
import sys

from browser import Browser

# Name, width, height that is shown, colours.
SCREENS = [("page", 1280, 1300, "light"), ("page-narrow", 400, 1300, "dark")]


def main():
    page, folder = sys.argv[1:]
    with Browser() as browser:
        for name, width, height, scheme in SCREENS:
            browser.resize(width)
            browser.scheme(scheme)
            browser.load(page)
            browser.picture(os.path.join(folder, name + ".png"), height)
        printed = os.path.join(folder, "page-printed")
        browser.print_to(printed + ".pdf")
    first_page = ["-f", "1", "-l", "1", "-singlefile", "-r", "80", "-png"]
    subprocess.run(["pdftoppm", *first_page, printed + ".pdf", printed], check=True)


main()
