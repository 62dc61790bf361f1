#!/usr/bin/env bash
# Installs the packages that scripts/package.sh has made into a system that has nothing else, follows docs/operation.md
# there, and removes them: scripts/package_test.sh
# Needs root. What it fetches of Debian is kept in build/package-cache.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ "${1:-}" != --inside ]; then
  if [ "$(id -u)" -ne 0 ]; then
    echo "A system can be set up by root only: sudo scripts/package_test.sh" >&2
    exit 1
  fi
  scripts/bootstrap.sh package
  ls build/package/qximportjob_*.deb >/dev/null 2>&1 || scripts/package.sh
  root=$(mktemp -d)
  trap 'rm -rf "$root"' EXIT
  # What is mounted below the root, and every process, goes with the namespaces.
  unshare --mount --pid --fork --mount-proc scripts/package_test.sh --inside "$root"
  exit
fi
root=$2

fail() {
  echo "scripts/package_test.sh: $*" >&2
  exit 1
}
step() { echo "[$SECONDS s] $*" >&2; }
# A command in the system, its output only when it fails.
quiet() { inside "$@" >"$root/log" 2>&1 || { tail -n 40 "$root/log" >&2; fail "$* failed"; }; }
inside() {
  env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root TERM=dumb DEBIAN_FRONTEND=noninteractive \
    chroot "$root" "$@"
}
install_packages() { # NAME...
  quiet apt-get -q -y --no-install-recommends -o APT::Sandbox::User=root install \
    $(printf "/packages/%s.deb\n" "$@")
}
equal() { # GOT WANTED WHAT
  [ "$1" = "$2" ] || fail "$3: '$1' instead of '$2'"
}
# A command in the system, as a user, with its exit status.
as() { # STATUS USER COMMAND...
  local wanted=$1 user=$2 status=0
  shift 2
  inside runuser -u "$user" -- env HOME="$(inside getent passwd "$user" | cut -d: -f6)" "$@" >"$root/log" 2>&1 || status=$?
  [ $status -eq "$wanted" ] || { cat "$root/log" >&2; fail "$user: $* ended with $status instead of $wanted"; }
}

cache=$PWD/build/package-cache
mkdir -p "$cache"
step "Setting up a small Debian 12"
debootstrap --variant=minbase --include=man-db --cache-dir="$cache" bookworm "$root" >"$cache/debootstrap.log" 2>&1 ||
  { tail -n 20 "$cache/debootstrap.log" >&2; fail "debootstrap failed"; }
# Others than root must be able to enter it.
chmod 755 "$root"
mount --bind "$cache" "$root/var/cache/apt/archives"
mount -t proc proc "$root/proc"
mkdir "$root/packages"
for package in build/package/*.deb; do cp "$package" "$root/packages/$(basename "${package%%_*}").deb"; done

step "Installing the program"
install_packages qximportjob
! inside dpkg-query -W 'libqt6*' >/dev/null 2>&1 || fail "the program needs Qt"
commit=$(sed -n 's/.*+\([0-9a-f]*\)_.*/\1/p' <<<"$(basename build/package/qximportjob_*.deb)")
grep -q "($commit" <<<"$(inside qximportjob --version)" || fail "the program has another commit than $commit"
equal "$(inside stat -c '%a %U:%G' /var/lib/qximportjob)" '2770 qximportjob:qximportjob' 'the folder of the database'
programs=$(readelf -hdsW "$root/usr/bin/qximportjob")
for mark in 'Type: *DYN' 'BIND_NOW' '__stack_chk_fail' '__[a-z]*_chk'; do
  grep -q "$mark" <<<"$programs" || fail "the program is not hardened: no $mark"
done

step "A database, a clerk, the nightly run"
database=/var/lib/qximportjob/qximportjob.db
quiet runuser -u qximportjob -- qximportjob --db $database init --demo --shared
quiet useradd --create-home --groups qximportjob anna
quiet useradd --create-home otto
as 0 anna qximportjob --db $database stage /usr/share/doc/qximportjob/examples/jobs.json
as 4 otto qximportjob --db $database list
nightly=$(sed -n 's/^ExecStart=//p' "$root/lib/systemd/system/qximportjob.service")
as 1 qximportjob sh -c "set -a; . /etc/default/qximportjob; umask 0007; exec $nightly"
as 0 anna qximportjob --db $database show BEISPIEL-AUFTRAG
grep -q '^Auftrag, erledigt' "$root/log" || fail "the run has not written the order"
equal "$(inside stat -c '%a %G' $database)" '660 qximportjob' 'the database'

step "Manual pages and completion"
for page in '1 qximportjob' '5 qximportjob.db'; do
  # shellcheck disable=SC2086
  quiet man $page
done
quiet bash -c 'source /usr/share/bash-completion/completions/qximportjob
  COMP_WORDS=(qximportjob proc) COMP_CWORD=1; _qximportjob; [ "${COMPREPLY[*]}" = process ]'

step "The window and the library"
install_packages qximportjob-view libqximportjob-dev
as 0 anna env QT_QPA_PLATFORM=offscreen timeout --signal=TERM --preserve-status 8 qximportjob --db $database view
[ -e "$root/usr/lib/x86_64-linux-gnu/qximportjob/libqx_engine.a" ] || fail "there is no library"

step "Removing"
quiet apt-get -q -y purge qximportjob qximportjob-view libqximportjob-dev
left=$(inside find / -xdev -name '*qximportjob*' -not -path '/packages/*' -not -path '/var/lib/qximportjob*' \
  -not -path '/var/cache/*' -not -path '/proc/*' -not -path '/home/*')
[ -z "$left" ] || fail "left behind: $left"
[ -s "$root$database" ] || fail "the database is gone"
step "The packages work"
