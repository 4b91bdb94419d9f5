// The module in a host that follows the person's locale: what the letters of a tag are, and how a
// number looks, must not depend on it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <fstream>
#include <ostream>

#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using fake_host::TempFolder;
using testing::HasSubstr;

struct NamedLocale {
  const char* source;
  const char* encoding;
  const char* definition = "";  ///< empty: the system has the source
  std::string name() const { return std::string(source) + "." + encoding; }
};

/// In no language is C anything but the capital of c; here it is that of d, and A that of b, so
/// that the end of a sheet's name tells whether letters are compared by the locale.
constexpr const char* kShiftedLetters =
    "LC_CTYPE\nupper <U0041>..<U005A>\nlower <U0061>..<U007A>\n"
    "toupper (<U0062>,<U0041>);(<U0064>,<U0043>)\n"
    "tolower (<U0041>,<U0062>);(<U0043>,<U0064>)\nEND LC_CTYPE\n"
    "LC_COLLATE\ncopy \"POSIX\"\nEND LC_COLLATE\n"
    "LC_MONETARY\ncopy \"POSIX\"\nEND LC_MONETARY\n"
    "LC_NUMERIC\ncopy \"POSIX\"\nEND LC_NUMERIC\n"
    "LC_TIME\ncopy \"POSIX\"\nEND LC_TIME\n"
    "LC_MESSAGES\ncopy \"POSIX\"\nEND LC_MESSAGES\n";

/// The process's locale while it lives, compiled into a folder of its own: test machines have few.
class ProcessLocale {
 public:
  explicit ProcessLocale(const NamedLocale& locale) {
    std::string source = locale.source;
    if (*locale.definition) {
      source = m_folder.file("definition");
      std::ofstream(source) << locale.definition;
    }
    const std::string command = "localedef -c -i " + source + " -f " + locale.encoding + " " +
                                m_folder.file(locale.name()) + " >/dev/null 2>&1";
    [[maybe_unused]] const int result = std::system(command.c_str());
    setenv("LOCPATH", m_folder.path().c_str(), 1);
    setenv("LC_ALL", locale.name().c_str(), 1);
    m_is_set = setlocale(LC_ALL, "") != nullptr;
  }
  ~ProcessLocale() {
    setlocale(LC_ALL, "C");
    unsetenv("LC_ALL");
    unsetenv("LOCPATH");
  }
  ProcessLocale(const ProcessLocale&) = delete;
  ProcessLocale& operator=(const ProcessLocale&) = delete;

  bool isSet() const { return m_is_set; }

 private:
  TempFolder m_folder;
  bool m_is_set = false;
};

struct Album {
  std::string sheet;
  std::vector<int16_t> image;
  std::string description;
  bool operator==(const Album&) const = default;
};

void PrintTo(const Album& album, std::ostream* out) {
  *out << album.description << ", " << album.image.size() << " samples\n" << album.sheet;
}

class Locale : public RenderCase, public testing::WithParamInterface<NamedLocale> {
 protected:
  Album render(const std::string& name, const Settings& settings) {
    host.metadata = {{"CUE:DISC_title", "Gece"},
                     {"CUE:DISC_TITLE", "Gece"},
                     {"CUE:DISC_Songwriter", "Yazar"},
                     {"CUE:DISC_performer", "Grup"}};
    host.marks = {region(0.0, 5.0, "Bir"),
                  marker(0.25, "isrc=USABC2600001"),
                  marker(0.5, "Writ=Ince Memed"),
                  marker(0.75, "perf=Ay\xC5\x9F\x65"),
                  region(5.5, 12.0, "\xC4\xB0ki"),
                  marker(5.75, "iSRC=USABC2600002"),
                  marker(6.0, "Iki"),
                  marker(6.25, "wrIt=\xC4\xB1\xC5\x9F\xC4\xB1k")};
    Sink sink = createSink(name + ".CuE", settings);
    EXPECT_TRUE(sink);
    if (!sink) return {};
    sink.writeSignal(12 * kSecond + 333);
    char description[64];
    sink->GetOutputInfoString(description, sizeof description);
    sink.finish();
    sink.destroy();
    return {readText(file(name + ".CuE")), fake_host::readSamples(file(name + ".bin")),
            description};
  }
};

TEST_P(Locale, SheetAndImageAreThoseUnderC) {
  const Settings markers = {.disc_leadin_ms = 1234, .track_leadin_ms = 2500};
  const Settings regions = {.track_leadin_ms = 1500, .track_mode = kTracksFromRegions};
  const Album plain_markers = render("disc", markers);
  const Album plain_regions = render("disc", regions);
  for (const Album& plain : {plain_markers, plain_regions}) {
    EXPECT_THAT(plain.sheet, HasSubstr("    ISRC \"USABC2600001\"\r\n"));
    EXPECT_THAT(plain.sheet, HasSubstr("    SONGWRITER \"Ince Memed\"\r\n"));
    EXPECT_THAT(plain.sheet, HasSubstr("TITLE \"Gece\"\r\nPERFORMER \"Grup\"\r\n"));
  }
  const ProcessLocale locale(GetParam());
  ASSERT_TRUE(locale.isSet()) << GetParam().name();
  EXPECT_EQ(render("disc", markers), plain_markers);
  EXPECT_EQ(render("disc", regions), plain_regions);
}

// In Turkish the capital of i is no I, and the small letter of I no i.
INSTANTIATE_TEST_SUITE_P(OfThePerson, Locale,
                         testing::Values(NamedLocale{"tr_TR", "UTF-8"},
                                         NamedLocale{"tr_TR", "ISO-8859-9"},
                                         NamedLocale{"de_DE", "UTF-8"},
                                         NamedLocale{"shifted", "UTF-8", kShiftedLetters}));

}  // namespace
}  // namespace sink_test
