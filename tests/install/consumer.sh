#!/bin/sh
# Installs the built tree into a scratch prefix and uses it the way another
# project would. One step per call, so that ctest reports each on its own:
#
#   consumer.sh install  BUILD SOURCE WORK [SANITIZE]  cmake --install into WORK/prefix; zem --version
#   consumer.sh cmake    BUILD SOURCE WORK [SANITIZE]  builds examples/consumer with find_package
#   consumer.sh pkgconfig BUILD SOURCE WORK [SANITIZE] compiles the C example with pkg-config
#
# Exit 77 (skipped) with a message when the tool a step needs is missing.
set -eu
step=$1 build=$2 source=$3 work=$4 sanitize=${5:-OFF}
prefix=$work/prefix
flags=
[ "$sanitize" = ON ] && flags="-fsanitize=address,undefined"

# The consumers print the size of the bundled models; the figures are those
# of examples/blend.mps and examples/refinery.xmps.
expect() {
    case "$1" in
        *"$2"*) ;;
        *) echo "expected '$2', got: $1" >&2; exit 1 ;;
    esac
}

case $step in
install)
    rm -rf "$work" && mkdir -p "$work"
    cmake --install "$build" --prefix "$prefix" >/dev/null
    for f in include/zemxmps/api/zemxmps.h include/zemxmps/zemmgr/IZEMMgr.h; do
        [ -f "$prefix/$f" ] || { echo "not installed: $f" >&2; exit 1; }
    done
    ls "$prefix"/lib*/libzemxmps.so.0 >/dev/null
    expect "$("$prefix/bin/zem" --version)" "libzemxmps"
    ;;
cmake)
    cmake -S "$source/examples/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$prefix" \
        -DCMAKE_CXX_FLAGS="$flags" >/dev/null
    cmake --build "$work/consumer" >/dev/null
    expect "$("$work/consumer/model_size" "$source/examples/blend.mps")" "BLEND: 6 rows, 4 columns, 23 nonzeros"
    ;;
pkgconfig)
    command -v pkg-config >/dev/null || { echo "pkg-config not found: skipped"; exit 77; }
    command -v cc >/dev/null || { echo "no C compiler (cc): skipped"; exit 77; }
    pc=$(dirname "$(ls "$prefix"/lib*/pkgconfig/zemxmps.pc "$prefix"/lib/*/pkgconfig/zemxmps.pc 2>/dev/null | head -1)")
    export PKG_CONFIG_PATH="$pc"
    # shellcheck disable=SC2046
    cc $flags -Wall -Werror "$source/examples/consumer/model_size.c" \
        $(pkg-config --cflags --libs zemxmps) -o "$work/model_size_c"
    libdir=$(pkg-config --variable=libdir zemxmps)
    expect "$(LD_LIBRARY_PATH="$libdir" "$work/model_size_c" "$source/examples/refinery.xmps")" \
        "libzemxmps $(pkg-config --modversion zemxmps): 15 rows, 18 columns"
    ;;
esac
