#!/usr/bin/env bash
# Installs the packages that scripts/package.sh has made into a system that has nothing else, follows docs/operation.md
# there, its timer and units included, and removes them: scripts/package_test.sh
# Needs root; for the timer a kernel that lends a second system its control groups. What it fetches of Debian is kept in
# build/package-cache.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The first process of the system, with mounts of its own.
if [ "${1:-}" = --boot ]; then
  cd "$2"
  mount --bind . .
  cd "$2"
  mount -t proc proc proc
  mount -t sysfs sysfs sys
  mount -t cgroup2 cgroup2 sys/fs/cgroup
  mount -t tmpfs -o mode=755 tmpfs run
  mount -t tmpfs -o mode=755 tmpfs dev
  for device in null zero full random urandom tty; do
    touch dev/$device
    mount --bind /dev/$device dev/$device
  done
  mkdir dev/pts dev/shm
  mount -t devpts -o newinstance,ptmxmode=0666 devpts dev/pts
  mount -t tmpfs tmpfs dev/shm
  ln -s pts/ptmx dev/ptmx
  ln -s /proc/self/fd dev/fd
  mkdir -p outside
  pivot_root . outside
  umount --lazy /outside
  exec env -i container=package-test PATH=/usr/sbin:/usr/bin:/sbin:/bin /lib/systemd/systemd --show-status=no
fi

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

step "The timer, its metrics and its mail"
# A command where the system runs, with its processes.
running() {
  nsenter --target "$first" --mount --pid --uts --ipc --cgroup \
    env -i PATH=/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root "$@"
}
# The box of the installed operation.md that has this text.
box() {
  awk -v wanted="$1" '
    /^```/ { if (found) exit; inside = !inside; text = ""; next }
    inside { text = text $0 "\n"; if (index($0, wanted)) found = 1 }
    END { if (!found) exit 1; printf "%s", text }' "$root/usr/share/doc/qximportjob/operation.md" ||
    fail "operation.md has no box with $1"
}
drop_in() { # UNIT TEXT
  mkdir -p "$root/etc/systemd/system/$1.d"
  box "$2" >"$root/etc/systemd/system/$1.d/$(tr -dc a-zA-Z <<<"$2").conf"
  running systemctl daemon-reload
}
result_of_run() { running systemctl show --property=Result,ExecMainStatus --value qximportjob.service | tr '\n' ' '; }
unshare --mount --pid --uts --ipc --cgroup --fork --kill-child "$PWD/scripts/package_test.sh" --boot "$root" \
  >"$root/boot.log" 2>&1 &
booter=$!
state=
for _ in $(seq 60); do
  sleep 0.5
  [ -d /proc/$booter ] || break
  first=$(tr -d ' ' <"/proc/$booter/task/$booter/children")
  [ -n "$first" ] || continue
  state=$(running systemctl is-system-running 2>/dev/null) || true
  case $state in running | degraded) break ;; esac
done
case $state in
running | degraded)
  rm -f "$root$database"*
  box 'init --shared' | running bash -e >/dev/null 2>&1 || fail "the database cannot be created as operation.md says"
  running runuser -u anna -- qximportjob --db $database stage /usr/share/doc/qximportjob/examples/jobs.json >/dev/null
  mkdir -p "$root/var/lib/prometheus/node-exporter"
  drop_in qximportjob.service 'ExecStopPost='
  drop_in qximportjob.service 'qximportjob backup --replace'
  box 'systemctl enable --now qximportjob.timer' | running bash -e >"$root/log" 2>&1 ||
    { running journalctl --lines=20 --unit=qximportjob.service >&2; fail "the run failed"; }
  grep -q 'Fehler .*BEISPIEL-VERTRAG' "$root/log" || fail "the log does not show what the run did"
  equal "$(result_of_run)" 'success 1 ' 'a run with findings'
  equal "$(running journalctl --unit=qximportjob.service --priority=err --output=cat | cut -c1-6 | sort -u)" Fehler \
    'what the log calls an error'
  running runuser -u otto -- grep -q '^qximportjob_last_run_completed 1' \
    /var/lib/prometheus/node-exporter/qximportjob.prom || fail "the collector cannot read the metrics"
  [ -s "$root/var/lib/qximportjob/backup.db" ] || fail "there is no backup"
  box 'rm -f qximportjob.db-wal' | running bash -e || fail "the backup cannot be restored as operation.md says"
  running runuser -u anna -- qximportjob --db $database status | grep 'none yet' >/dev/null ||
    fail "the backup is not what the database was before the run"
  grep -q qximportjob.timer <<<"$(running systemctl list-timers)" || fail "the timer does not run"

  # A mail server takes over what the command leaves behind.
  cat >"$root/usr/local/bin/mail" <<'MAIL'
#!/bin/sh
{ echo "$@"; cat; } >/var/tmp/mail.new
(sleep 1; mv /var/tmp/mail.new /var/tmp/mail) &
MAIL
  chmod +x "$root/usr/local/bin/mail"
  box 'systemctl start qximportjob-failure' | running bash -e || fail "the unit that mails failed"
  sleep 2
  grep -q '^-s qximportjob.service failed on .* root$' "$root/var/tmp/mail" || fail "no mail was sent to root"
  rm "$root/var/tmp/mail"
  drop_in qximportjob-failure@.service MAILTO
  drop_in qximportjob.service OnFailure
  drop_in qximportjob.service 'qximportjob stage /srv'
  ! running systemctl start qximportjob.service 2>/dev/null || fail "a file that is missing does not count as a failure"
  sleep 2
  grep -q ' it@firma.example$' "$root/var/tmp/mail" || fail "the drop-in names nobody"
  grep -q '/srv/shop/orders.json: No such file' "$root/var/tmp/mail" || fail "the mail does not say why the run failed"

  mkdir -p "$root/srv/shop"
  seq 40000 | sed 's/.*/{"type":"Kunde","JobID":"&","Kundennummer":"&","Bez1":"Firma"}/' >"$root/srv/shop/orders.json"
  running systemctl start --no-block qximportjob.service
  # Behind the commands that come first.
  until [ "$(running systemctl show --property=SubState --value qximportjob.service)" = start ]; do sleep 0.1; done
  sleep 0.5
  running systemctl stop qximportjob.service 2>/dev/null
  equal "$(result_of_run)" 'exit-code 5 ' 'a run that was stopped'
  grep -q '^qximportjob_last_run_completed 0' "$root/var/lib/prometheus/node-exporter/qximportjob.prom" ||
    fail "the metrics do not tell of the run that was stopped"
  # What the administrator has made, and when systemd has started the timer last.
  rm -r "$root"/etc/systemd/system/qximportjob* "$root/srv/shop" "$root/usr/local/bin/mail" \
    "$root/var/lib/prometheus" "$root/var/lib/systemd/timers/stamp-qximportjob.timer"
  kill -KILL "$first"
  wait "$booter" 2>/dev/null || true
  ;;
*)
  tail -n 5 "$root/boot.log" >&2
  step "The timer was not tried: no second system can be started here"
  kill -KILL "${first:-$booter}" 2>/dev/null || true
  ;;
esac

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
