# shellcheck shell=bash
# ./dev setup: installs the Debian packages that are missing. Does nothing, and needs no network, when none is.
source scripts/common.sh

missing=()
while read -r package; do
  if ! dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed; then
    missing+=("$package")
  fi
done < <(sed 's/#.*//; /^\s*$/d' scripts/packages.txt)

if [ ${#missing[@]} -eq 0 ]; then
  echo "dev: everything is installed"
  exit 0
fi
say "Installing ${missing[*]}"
as_root apt-get update -qq
as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
  >build/setup.log 2>&1 || {
  tail -n 20 build/setup.log >&2
  fail "installing failed; the whole log is build/setup.log"
}
echo "dev: installed ${#missing[@]} packages"
