# shellcheck shell=bash
# Sourced by the scripts: installs what is missing. Needs Debian's package tools;
# elsewhere it leaves the machine alone and lets the build say what it lacks.

# require_packages NAME...
require_packages() {
    local name missing=()
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        return 0
    fi
    for name in "$@"; do
        if [[ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" != installed ]]; then
            missing+=("$name")
        fi
    done
    if ((${#missing[@]} == 0)); then
        return 0
    fi

    local asRoot=()
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "missing packages, and neither root nor sudo: ${missing[*]}" >&2
            return 1
        fi
        asRoot=(sudo)
    fi
    echo "installing ${missing[*]}" >&2
    run_quietly "${asRoot[@]}" apt-get -q update
    run_quietly "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -y --no-install-recommends install "${missing[@]}"
}

# run_quietly COMMAND...: its output only when it fails.
run_quietly() {
    local log code=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || code=$?
    if ((code != 0)); then
        cat "$log" >&2
        echo "failed ($code): $*" >&2
    fi
    rm -f "$log"
    return "$code"
}
