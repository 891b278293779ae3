#!/usr/bin/env bash
# What is installed beside the programs: desktop entry, metainfo and manual
# pages are valid and true, versions agree, and the Debian package is built with
# everything that the build asks for.
# Usage: package_files_test.sh VEL VELWEB
set -euo pipefail
vel=$1
velweb=$2
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

failures=0
fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}

desktop-file-validate packaging/vel.desktop >"$work/desktop" 2>&1 || fail "the desktop entry"
[ ! -s "$work/desktop" ] || fail "the desktop entry: $(cat "$work/desktop")"
appstreamcli validate --no-net --pedantic packaging/org.example.vel.metainfo.xml \
  >"$work/metainfo" 2>&1 || fail "the metainfo: $(cat "$work/metainfo")"

# The options that a program's help names, and those of a manual page.
options_of_help() { "$1" --help | grep -oE '^ +(-[a-z],)?--[a-z-]+' | grep -oE -- '--[a-z-]+' | sort; }
options_of_page() {
  sed -n '/^\.SH OPTIONS/,/^\.SH /p' "$1" | grep -A1 '^\.TP' | sed 's/\\-/-/g' |
    grep -oE -- '--[a-z-]+' | sort
}
for program in "$vel" "$velweb"; do
  name=$(basename "$program")
  page=packaging/man/$name.1
  LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" \
    >/dev/null 2>"$work/page" || fail "$page"
  [ ! -s "$work/page" ] || fail "$page: $(cat "$work/page")"
  options_of_help "$program" >"$work/help"
  options_of_page "$page" >"$work/options"
  [ "$(wc -l <"$work/help")" -ge 3 ] || fail "no options in $name --help"
  diff "$work/help" "$work/options" >&2 || fail "$page and $name --help differ"
done

# A package is built from a tree where debian stands at the top.
debian=packaging/debian/debian
[ -d "$debian" ] || debian=debian
version=$(sed -n 's/^project(vel VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
[ "$(head -1 "$debian/changelog" | sed 's/.*(\(.*\)).*/\1/')" = "$version" ] ||
  fail "the version in the changelog"
grep -q "<release version=\"$version\"" packaging/org.example.vel.metainfo.xml ||
  fail "the version in the metainfo"
for page in packaging/man/*.1; do
  head -1 "$page" | grep -q "\"VEL $version\"" || fail "the version in $page"
done
for said in "$("$vel" --version)" "$("$velweb" --version)"; do
  [ "${said##* }" = "$version" ] || fail "the version that is said: $said"
done

# The Debian package of what CMake looks for.
package_of() {
  case $1 in
    Qt6) echo qt6-base-dev ;;
    JPEG) echo libjpeg-dev ;;
    CLI11) echo libcli11-dev ;;
    SQLite3) echo libsqlite3-dev ;;
    ZLIB) echo zlib1g-dev ;;
    pugixml) echo libpugixml-dev ;;
    libmicrohttpd) echo libmicrohttpd-dev ;;
    GTest) echo libgtest-dev ;;
    cpp-httplib) echo libcpp-httplib-dev ;;
    PkgConfig) echo pkgconf ;;
    Threads) ;;
    *) fail "unknown to this test: $1" ;;
  esac
}
sed -n '/^Build-Depends:/,/^[A-Z]/p' "$debian/control" >"$work/depends"
asked=$(grep -rhoE '(find_package\([A-Za-z0-9]+|IMPORTED_TARGET [a-z0-9-]+)' --include=CMakeLists.txt \
  CMakeLists.txt src samples docs packaging tests | sed 's/.*[( ]//' | sort -u)
[ "$(wc -w <<<"$asked")" -ge 10 ] || fail "too few libraries found: $asked"
for library in $asked; do
  for package in $(package_of "$library"); do
    grep -qE "^ $package( |,|\$)" "$work/depends" || fail "not in Build-Depends: $package"
  done
done

[ "$failures" -eq 0 ] && echo "desktop entry, metainfo, manual pages, versions, build dependencies: right"
[ "$failures" -eq 0 ]
