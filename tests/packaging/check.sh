#!/bin/bash
# usage: check.sh BUILD-FOLDER   Makes the Debian packages and uses what is in them.
set -eu
build=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
fail() {
  echo "$*" >&2
  exit 1
}
(cd "$folder" && cpack --config "$build/CPackConfig.cmake" -B "$folder" -G DEB > cpack.log 2>&1) || fail "$(cat "$folder/cpack.log")"
mkdir "$folder/root"
for package in "$folder"/*.deb; do
  dpkg-deb -c "$package" > "$folder/list"
  ! grep -v ' root/root ' "$folder/list" || fail "$package: files that are not root's"
  ! grep -E '^-..[sS]|^-.....[sS]' "$folder/list" || fail "$package: setuid or setgid files"
  dpkg-deb -x "$package" "$folder/root"
done
for page in man8/ktsetup.8 man8/ktcfg.8 man8/ktreport.8 man1/ktsim.1 man7/ktraid-sim.7; do
  [ -s "$folder/root/usr/share/man/$page.gz" ] || [ ! -x "$(command -v scdoc)" ] || fail "no $page"
done
for words in ktsetup ktcfg ktreport ktsim; do
  bash -n "$folder/root/usr/share/bash-completion/completions/$words" || fail "completion of $words"
done

for file in lib/systemd/system/ktreport-metrics.service lib/systemd/system/ktreport-metrics.timer \
  lib/systemd/system/ktreport-events.service share/ktsetup/prometheus/ktraid.rules.yml share/doc/ktsetup/monitoring.md \
  share/doc/ktsetup/examples/gather-reports.yml; do
  [ -s "$folder/root/usr/$file" ] || fail "no $file"
done
[ -x "$folder/root/usr/share/doc/ktsetup/examples/ktreport.fact" ] || fail "the fact cannot be executed"
dpkg-deb -e "$folder"/ktsetup_*.deb "$folder/control"
for script in postinst prerm postrm; do
  [ -x "$folder/control/$script" ] && sh -n "$folder/control/$script" || fail "$script"
done
grep -q '^Depends:.*libprometheus-cpp-core' "$folder/control/control" || fail "a dependency is not stated"

# Alone, without any library, ktsetup ends with the loader's message; beside ktraid-sim it runs through ktsim.
export KTRAID_SIM=$folder/state.db PATH=$folder/root/usr/sbin:$folder/root/usr/bin:$PATH
unset LD_LIBRARY_PATH
message=$(ktsetup ver 2>&1) && fail "ktsetup started without a library"
[[ $message == *"error while loading shared libraries: libktraid.so.4"* ]] || fail "$message"
ktsim run -- ktsetup info -o hba | grep -q '^Adapter ID: ' || fail "no adapter on the simulated library"
ktsim run -- ktreport check --ignore spare-none-fits > "$folder/verdict" || [ $? -le 2 ] || fail "$(cat "$folder/verdict")"
message=$(ktsim rehearse -- ktsetup ver 2>&1) && fail "a rehearsal without adapters"
[[ $message == *"there is no report of the adapters: "*"libktraid.so.4"* ]] || fail "$message"
ktsim run -- ktreport json --records > "$folder/report.json" || fail "no report"
ktsim rehearse --from "$folder/report.json" -- ktsetup assign -d 11 > "$folder/rehearsal" || fail "no rehearsal"
grep -q 'What would change:' "$folder/rehearsal" || fail "$(cat "$folder/rehearsal")"
if command -v lintian > /dev/null; then
  ! lintian --fail-on error "$folder"/*.deb 2>&1 | grep '^E:' || fail "lintian has errors"
fi
echo "packages hold what they should"
