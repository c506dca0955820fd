#!/usr/bin/env bash
# Runs Windows programs in a prefix of the build's own, without a display.
#
#     wine.sh PREFIX start             makes the prefix and keeps a server for it
#     wine.sh PREFIX run PROGRAM ...   runs a program; output and exit code are its own
#     wine.sh PREFIX stop              ends the server and all that still runs there
#
# The first program of a prefix starts services, which would inherit the pipes of
# whoever reads its output and hold them open: so "start" comes first, detached.
# A server that nobody stops ends by itself, two minutes after its last program.
set -euo pipefail

prefix=$1
verb=$2
shift 2

folder=/usr/lib/wine
loader=$folder/wine64
if [[ ! -x "$loader" ]]; then
    if ! loader=$(command -v wine64 || command -v wine); then
        echo "wine.sh: wine is missing (Debian's package wine64)" >&2
        exit 2
    fi
    folder=$(dirname "$loader")
fi
server=$folder/wineserver64
if [[ ! -x "$server" ]]; then
    server=$(command -v wineserver || echo wineserver)
fi

mkdir -p "$prefix/home"
export WINEPREFIX=$prefix WINELOADER=$loader WINESERVER=$server WINEARCH=win64
# Nothing of the person's own is read or written: no menus, no folders of the
# home directory, no offers to install more.
export HOME=$prefix/home XDG_CONFIG_HOME=$prefix/home XDG_DATA_HOME=$prefix/home
export XDG_CACHE_HOME=$prefix/home
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
# Quiet, but for a DLL that is not found.
export WINEDEBUG=-all,err+module
# The plain C locale would mangle what is not ASCII in arguments.
export LC_ALL=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY

# Refused at once when the prefix has its server.
start() {
    if setsid "$server" -p120 </dev/null >/dev/null 2>&1; then
        setsid "$loader" wineboot --init </dev/null >/dev/null 2>&1
    fi
}

case "$verb" in
    start)
        start
        ;;
    run)
        # ctest lists the tests of a program before any fixture runs.
        if [[ " $* " == *" --gtest_list_tests "* ]]; then
            start
            # CMake takes the CR of a line end for a part of the test's name.
            "$loader" "$@" | tr -d '\r'
            exit
        fi
        exec "$loader" "$@"
        ;;
    stop)
        "$server" -k || true
        "$server" -w
        ;;
    *)
        echo "wine.sh: unknown verb $verb" >&2
        exit 2
        ;;
esac
