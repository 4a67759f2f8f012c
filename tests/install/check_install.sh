#!/usr/bin/env bash
# Installs a build into a temporary prefix and uses it as a client would: the installed script
# host runs, every public header compiles on its own, a program builds and runs against the CMake
# package and against the pkg-config file, and find_package answers version and component
# requests as it should.
#
# Usage: check_install.sh BUILD_DIR CXX CMAKE NINJA LIBDIR INCLUDEDIR BINDIR VERSION
set -euo pipefail

build=$1 cxx=$2 cmake=$3 ninja=$4 libdir=$5 includedir=$6 bindir=$7 version=$8
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

work=$(mktemp -d "${TMPDIR:-/tmp}/ravelin-install.XXXXXX")
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

fail() {
  echo "FAIL: $*" >&2
  exit 1
}

# Runs a command quietly, showing its output only when it fails.
quietly() {
  local log=$work/step.log
  "$@" >"$log" 2>&1 || {
    cat "$log" >&2
    fail "$*"
  }
}

# Runs a program and compares what it prints with the expected text.
expect_output() {
  local expected=$1 actual
  shift
  actual=$("$@") || fail "$* exited with $?"
  [[ "$actual" == "$expected" ]] || fail "$* printed '$actual', expected '$expected'"
}

echo "== cmake --install into $prefix"
quietly "$cmake" --install "$build" --prefix "$prefix"
[[ -x $prefix/$bindir/ravelin && -x $prefix/$bindir/ravelin-demo ]] || fail "programs missing"
[[ -d $prefix/$includedir/ravelin/platform/fake ]] || fail "the platform fakes are missing"
[[ -z $(find "$prefix/$includedir/ravelin" -type d -name internal) ]] ||
  fail "folder-private headers were installed"

echo "== the installed script host"
expect_output 2 "$prefix/$bindir/ravelin" -e 'WScript.Echo 1+1'

echo "== each public header compiles on its own"
export RAVELIN_CXX=$cxx RAVELIN_INCLUDE=$prefix/$includedir
# shellcheck disable=SC2016 # the inner shell expands them
(cd "$RAVELIN_INCLUDE" && find ravelin -name '*.hpp' | sort) |
  xargs -P 2 -n 1 sh -c 'printf "#include <%s>\n" "$1" |
    "$RAVELIN_CXX" -std=c++20 -fsyntax-only -I"$RAVELIN_INCLUDE" -x c++ - ||
    { echo "$1 does not compile on its own" >&2; exit 1; }' header ||
  fail "public headers"

echo "== a program built with find_package(Ravelin)"
quietly "$cmake" -S "$here/consumer" -B "$work/consumer" -G Ninja -DCMAKE_MAKE_PROGRAM="$ninja" \
  -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$prefix"
grep -qxF "Ravelin_DIR:PATH=$prefix/$libdir/cmake/Ravelin" "$work/consumer/CMakeCache.txt" ||
  fail "the consumer found a Ravelin package outside $prefix"
quietly "$cmake" --build "$work/consumer" -j 2
expect_output "$(cat "$here/consumer/expected.out")" "$work/consumer/consumer"

echo "== the same program built with pkg-config"
flags=$(PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig" pkg-config --cflags --libs ravelin) ||
  fail "pkg-config ravelin"
# shellcheck disable=SC2086 # the flags are words
quietly "$cxx" -std=c++20 "$here/consumer/main.cpp" -o "$work/consumer-pkg-config" $flags
expect_output "$(cat "$here/consumer/expected.out")" "$work/consumer-pkg-config"

echo "== find_package answers version and component requests"
quietly "$cmake" -S "$here/package_probe" -B "$work/probe" -G Ninja \
  -DCMAKE_MAKE_PROGRAM="$ninja" -DCMAKE_PREFIX_PATH="$prefix" -DRAVELIN_VERSION="$version"
echo "install checks passed"
