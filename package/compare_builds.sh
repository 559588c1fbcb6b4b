# Sourced by script/package, which names the packages: makes them once more as another builder would, and compares. The
# other one has the sources in another folder, of a longer name with a blank, without version control and with the times of
# today; another time zone, umask, home and locale; and where this runs as root another user.

other="$(mktemp -d)/the other builder"
mkdir "$other"
trap 'rm -rf "$(dirname "$other")"' EXIT
tar -C "$root" --exclude=./build --exclude=./.git -cf - . | tar -C "$other" -xf -
chmod -R go= "$other"
find "$other" -exec touch {} +

asOther=(env -i "PATH=$PATH" "HOME=$other" TZ=XYZ-13:45 LC_ALL=C)
if [[ $(id -u) -eq 0 ]]; then
    chmod 755 "$(dirname "$other")"
    chown -R 65534:65534 "$other"
    asOther=(setpriv --reuid 65534 --regid 65534 --clear-groups "${asOther[@]}")
else
    echo "not root: the other builder is the same user" >&2
fi
(cd / && umask 077 && "${asOther[@]}" "$other/script/package" >/dev/null)

passed=0
failed=0
for package in "$packages"/*; do
    if cmp "$package" "$other/build/packages/$(basename "$package")"; then
        echo "equal: $(basename "$package")"
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
    fi
done
echo "$passed passed, $failed failed"
[[ $failed -eq 0 ]]
