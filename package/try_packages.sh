# Sourced by script/package, which names the packages: unpacks or installs each in a new place, starts it, removes it.

passed=0
failed=0
trial=$root/build/package-trial
rm -rf "$trial"
mkdir -p "$trial/else where"

# try WHAT COMMAND...: one check; what a failing command says is shown.
try() {
    local what=$1
    shift
    if "$@" >"$trial/output" 2>&1; then
        echo "good: $what"
        passed=$((passed + 1))
    else
        echo "bad: $what"
        sed 's/^/    | /' "$trial/output"
        failed=$((failed + 1))
    fi
}

finishTrial() {
    local status=$?
    [[ $status -eq 0 ]] || failed=$((failed + 1))
    if [[ ${#processes[@]} -gt 0 ]]; then
        endWine
        endProcesses
    fi
    echo "$passed passed, $failed failed"
    [[ $failed -eq 0 ]] || exit 1
}
trap finishTrial EXIT

# within SECONDS COMMAND...: waits until the command succeeds.
within() {
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        [[ $SECONDS -lt $end ]] || return 1
        sleep 0.5
    done
}

isGone() {
    [[ ! -e $1 ]]
}

isNoKey() {
    ! timeout 60 wine reg query "$1"
}

# The version in a program's version resource, two fields behind a signature.
resourceVersion() {
    python3 - "$1" <<'PYTHON'
import struct, sys
program = open(sys.argv[1], "rb").read()
high, low = struct.unpack_from("<II", program, program.index(struct.pack("<I", 0xFEEF04BD)) + 8)
print("%d.%d.%d" % (high >> 16, high & 0xFFFF, low >> 16))
PYTHON
}
hasResourceVersion() {
    [[ $(resourceVersion "$1") == "$version" ]]
}

# hasSameReport COMMAND...: a report of the sample is that of the build.
hasSameReport() {
    [[ $(timeout 60 "$@" --version | tr -d '\r') == "ombrivantel-batch $version" ]] &&
        timeout 60 "$@" fundamental --path iris.csv "$sample" | cmp - "$trial/report"
}

# Starts the window with a sample, waits until it shows it, and closes it as its close box does.
opensAndCloses() {
    local programFolder=$1 process
    rm -f "$programFolder/Ombrivantel.par"
    (cd "$trial/else where" && exec timeout 120 wine "$programFolder/Ombrivantel.exe" "$(windowsPath "$sample")") &
    process=$!
    within 60 xdotool search --onlyvisible --name '^Ombrivantel' &&
        within 30 test -s "$programFolder/Ombrivantel.par" &&
        import -window root "$trial/window.png" &&
        timeout 60 wine taskkill /IM Ombrivantel.exe &&
        wait "$process"
}

# startsWith SHORTCUT ARGUMENTS: the shortcut's file holds its arguments in 16-bit characters.
startsWith() {
    tr -d '\0' <"$1" | grep -aF -- "$2"
}

# opensWithProgram FOLDER: the explorer would open a comma-separated file with the program in it.
opensWithProgram() {
    timeout 60 wine reg query 'HKCU\Software\Classes\.csv\OpenWithProgids' /v Ombrivantel.csv &&
        timeout 60 wine reg query 'HKCU\Software\Classes\Ombrivantel.csv\shell\open\command' /ve |
        grep -F "\"$(windowsPath "$1/Ombrivantel.exe")\" \"%1\""
}

# runsExamples PAGE FOLDER: the examples of the manual page, with what is installed in the folder instead of in /.
runsExamples() {
    local example count=0
    while read -r example; do
        (cd "$trial" && eval "$2/usr/bin/${example//\/usr\//$2\/usr\/}") || return 1
        count=$((count + 1))
    done < <(man -l "$1" 2>/dev/null | sed -n '/^EXAMPLES/,/^SEE/s/^ *\(ombrivantel-batch .*\)/\1/p')
    [[ $count -gt 0 && -s $trial/pca.svg ]]
}

# completes COMMAND...: it prints the one word that is left.
completes() {
    [[ $("$@") == covariance ]]
}

tryZip() {
    local unpacked="$trial/any where" folder
    unzip -q "$zip" -d "$unpacked"
    folder=$unpacked/Ombrivantel-$version
    try "the zip is one folder" test "$(ls "$unpacked")" = "Ombrivantel-$version"
    try "its programs, samples, manual and licence" ls "$folder/Ombrivantel.exe" "$folder/ombrivantel-batch.exe" \
        "$folder/LICENSE.txt" "$folder/docs/manual.html" "$folder/samples/iris.csv"
    sample=$folder/samples/iris.csv
    try "the batch runner under Wine" hasSameReport wine "$folder/ombrivantel-batch.exe"
    try "the version of its window" hasResourceVersion "$folder/Ombrivantel.exe"
    try "the window from another folder" opensAndCloses "$folder"
}

tryInstaller() {
    local home installed shortcut key='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Ombrivantel'
    home=$(timeout 60 wine cmd /c 'echo %LOCALAPPDATA%' | tr -d '\r')
    home=$(wine winepath -u "$home")
    installed=$home/Programs/Ombrivantel
    shortcut="$home/../Roaming/Microsoft/Windows/Start Menu/Programs/Ombrivantel"
    rm -rf "$installed"
    try "the version of the installer" hasResourceVersion "$setup"
    try "silent installation" timeout 120 wine "$setup" /S
    try "what was installed is what the zip holds" diff -r -x Uninstall.exe "$folder" "$installed"
    try "its shortcut" test -s "$shortcut/Ombrivantel.lnk"
    try "that for textbook numerics" startsWith "$shortcut/Ombrivantel (textbook numerics).lnk" "--numerics textbook"
    try "its entry among the programs" timeout 60 wine reg query "$key" /v QuietUninstallString
    try "its size there" timeout 60 wine reg query "$key" /v EstimatedSize
    try "it is offered for comma-separated files" opensWithProgram "$installed"
    sample=$installed/samples/iris.csv
    try "the installed batch runner" hasSameReport wine "$installed/ombrivantel-batch.exe"
    try "the installed window" opensAndCloses "$installed"
    cp "$installed/Ombrivantel.par" "$trial/settings"
    try "installation over it" timeout 120 wine "$setup" /S
    try "the settings are kept" cmp "$trial/settings" "$installed/Ombrivantel.par"
    # The uninstaller goes on in a copy of itself after it has returned.
    try "silent removal" timeout 120 wine "$installed/Uninstall.exe" /S
    within 60 isGone "$installed/Uninstall.exe" || true
    within 10 isGone "$shortcut" || true
    try "only the settings are left" test "$(ls "$installed")" = Ombrivantel.par
    try "the settings are as they were" cmp "$trial/settings" "$installed/Ombrivantel.par"
    try "no shortcut is left" isGone "$shortcut"
    try "no entry is left" isNoKey "$key"
    try "no offer is left" isNoKey 'HKCU\Software\Classes\Ombrivantel.csv'
    try "nor a trace of it" isNoKey 'HKCU\Software\Classes\.csv'
}

tryDeb() {
    local unpacked=$trial/deb program=usr/bin/ombrivantel-batch page
    try "lintian" lintian --fail-on error "$deb"
    dpkg-deb --contents "$deb" >"$trial/contents"
    try "the .deb's contents" grep -E "^-rwxr-xr-x root/root .* \./$program\$" "$trial/contents"
    dpkg-deb -x "$deb" "$unpacked"
    sample=$unpacked/usr/share/doc/ombrivantel-batch/samples/iris.csv
    try "the unpacked batch runner" hasSameReport "$unpacked/$program"
    page=$unpacked/usr/share/man/man1/ombrivantel-batch.1.gz
    try "its man page" test -z "$(man --warnings -l "$page" 2>&1 >/dev/null)"
    try "the man page's examples" runsExamples "$page" "$unpacked"
    try "its completion in bash" completes bash -c '
        . "$1/usr/share/bash-completion/completions/ombrivantel-batch"
        COMP_WORDS=(ombrivantel-batch pca --base cov) COMP_CWORD=3
        _ombrivantel_batch
        echo "${COMPREPLY[@]}"' bash "$unpacked"
    try "its completion in zsh" grep -F "'*--base=[" "$unpacked/usr/share/zsh/vendor-completions/_ombrivantel-batch"
    [[ $(id -u) -eq 0 ]] || { echo "not root: the .deb is not installed"; return 0; }
    if dpkg-query -W ombrivantel-batch >/dev/null 2>&1; then
        echo "ombrivantel-batch is installed here already, and is left alone"
        return 0
    fi
    # apt-get reads a package as a user of its own where it can, hence from a place that everybody reads.
    local place
    place=$(mktemp -d)
    chmod 755 "$place"
    cp "$deb" "$place"
    try "apt-get install" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 install "$place/$(basename "$deb")"
    rm -r "$place"
    try "the installed program" hasSameReport /$program
    try "apt-get purge" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 purge ombrivantel-batch
    try "nothing is left" isGone /$program
}

"$root/build/native/bin/ombrivantel-batch" fundamental --path iris.csv "$root/samples/iris.csv" \
    >"$trial/report" 2>"$trial/output"
startDisplay "$trial"
useWine package
tryZip
tryInstaller
tryDeb
