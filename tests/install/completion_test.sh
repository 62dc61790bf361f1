#!/usr/bin/env bash
# Lets the shells complete command lines by the scripts that the program prints: completion_test.sh PROGRAM
set -euo pipefail
program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export LC_ALL=C.UTF-8 HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_DATA_HOME=$folder/data
cd "$folder"
touch 'märz 1.edi' jobs.db
for shell in bash zsh fish; do "$program" completion $shell >$shell; done

# The last word is the one to complete.
in_bash() { # WORD...
  bash --norc -c '
    compopt() { :; } # works only while a key is answered
    source ./bash
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    _qximportjob
    printf "%s\n" "${COMPREPLY[@]}"' - "$@"
}
in_fish() { fish --no-config -c 'source ./fish; complete -C "$argv"' "$*" | cut -f 1; }

failures=0
completes() { # WANTED SHELL... -- WORD...: the matches, "|" between them
  local wanted=$1 shell got shells=()
  shift
  while [ "$1" != -- ]; do shells+=("$1") && shift; done
  shift
  for shell in "${shells[@]}"; do
    got=$("in_$shell" qximportjob "$@" | sort | paste -sd'|')
    [ "$got" = "$wanted" ] && continue
    printf '%s: "%s" completes to\n  %s\nnot to\n  %s\n' "$shell" "$*" "$got" "$wanted" >&2
    failures=$((failures + 1))
  done
}

completes 'schema|scramble|settings|show|stage|status' bash fish -- s
completes 'export|get|import|list|set' bash fish -- --db list settings ''
# What a command takes at each place.
completes 'ImportJob2' bash fish -- settings get Imp
completes 'KundenBankleitzahl' bash fish -- settings --local get ImportJob2 KundenB
completes '' bash fish -- settings get ImportJob2 KundenBankleitzahl Imp
completes 'märz 1.edi' bash fish -- stage m
completes 'jobs.db' bash -- --db jo
# Options of the command and of the program, and their values.
completes '--again' bash fish -- stage --a
completes '--date|--db' bash fish -- lock show --d
completes 'waiting|warning' bash fish -- list --state done --state wa
completes 'verträge' bash -- process --select = ve
completes 'done|error|waiting|warning' bash -- list --state =
completes '' bash fish -- process --user v
completes 'bash|fish|zsh' bash fish -- completion ''
completes 'jobid' bash fish -- list --sort j
completes 'process|process-line|protocol|protocol-purge|purge' bash fish -- schema --output p
completes 'always|auto' bash fish -- --color a

zsh -n ./zsh || failures=$((failures + 1))
# As zsh and fish load it from their own folders.
[ "$(head -n 1 zsh)" = '#compdef qximportjob' ] || { echo 'zsh would not load it by itself' >&2; failures=$((failures + 1)); }
[ $failures -eq 0 ]
