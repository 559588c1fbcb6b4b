# Sourced by the scripts beside it: where things are, and how Windows programs are run here.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

onWindows() {
    case $(uname -s) in
    MINGW* | MSYS* | CYGWIN*) return 0 ;;
    *) return 1 ;;
    esac
}

# useWine NAME: the following `wine` commands use the prefix build/wine/NAME, which is made when it is missing.
# Programs that a user runs and programs under test have one each, since each prefix ends as a whole.
useWine() {
    export WINEPREFIX=$root/build/wine/$1
    export WINEARCH=win64
    export WINEDEBUG=-all
    # No offers to install Mono and Gecko, no entries in the user's menus.
    export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
    # File names outside ASCII need a locale that has them.
    if [[ -z ${LC_ALL:-}${LC_CTYPE:-}${LANG:-} ]]; then
        export LC_ALL=C.UTF-8
    fi
    if [[ ! -e $WINEPREFIX/.made ]]; then
        echo "making the Wine prefix build/wine/$1" >&2
        rm -rf "$WINEPREFIX"
        mkdir -p "$WINEPREFIX"
        timeout 300 wine wineboot --init >"$WINEPREFIX.log" 2>&1 || {
            cat "$WINEPREFIX.log" >&2
            return 1
        }
        # A crash must end the program, not wait behind a dialog.
        timeout 60 wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null
        touch "$WINEPREFIX/.made"
    fi
}

# Ends what still runs in the prefix of useWine, and nothing else.
endWine() {
    /usr/lib/wine/wineserver64 -k || true
}

windowsPath() {
    wine winepath -w "$1" | tr -d '\r'
}
