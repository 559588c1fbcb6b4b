# Sourced by the scripts beside it: where things are, and how Windows programs are run here.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

onWindows() {
    case $(uname -s) in
    MINGW* | MSYS* | CYGWIN*) return 0 ;;
    *) return 1 ;;
    esac
}

# installPackages NAME...: installs the Debian packages that are not there yet, with sudo when it is not root.
installPackages() {
    local package status missing=() asRoot=()
    if ! command -v dpkg-query >/dev/null; then
        echo "not a Debian system; going on without installing what these packages hold: $*" >&2
        return 0
    fi
    for package in "$@"; do
        status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
        [[ $status == installed ]] || missing+=("$package")
    done
    [[ ${#missing[@]} -gt 0 ]] || return 0

    echo "installing: ${missing[*]}" >&2
    if [[ $(id -u) -ne 0 ]]; then
        command -v sudo >/dev/null || { echo "run $0 as root once: there is no sudo here" >&2; return 1; }
        asRoot=(sudo)
    fi
    local install=("${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y
        -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)
    "${install[@]}" update >&2
    "${install[@]}" install --no-install-recommends "${missing[@]}" >&2
}

# What was started beside the work, by process id.
processes=()
endProcesses() {
    [[ ${#processes[@]} -gt 0 ]] || return 0
    kill "${processes[@]}" 2>/dev/null || true
    wait "${processes[@]}" 2>/dev/null || true
    processes=()
}

# startDisplay FOLDER: a display of our own with a window manager, so that windows have frames and the focus as a
# user has them. Its number is kept in the folder.
startDisplay() {
    local number=$1/display
    : >"$number"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -dpi 96 -nolisten tcp -noreset 3>"$number" >/dev/null 2>&1 &
    processes+=($!)
    for _ in {1..100}; do
        [[ ! -s $number ]] || break
        sleep 0.1
    done
    DISPLAY=:$(<"$number")
    export DISPLAY
    unset WAYLAND_DISPLAY
    xdotool getdisplaygeometry >/dev/null
    openbox --sm-disable >/dev/null 2>&1 &
    processes+=($!)
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
    [[ ${WINEPREFIX:-} == "$root"/build/wine/* ]] || return 0
    /usr/lib/wine/wineserver64 -k || true
}

windowsPath() {
    wine winepath -w "$1" | tr -d '\r'
}
