#!/usr/bin/env bash
# The manual page renders without warnings and, command by command, its
# synopsis names the same options as `yh COMMAND --help`.
# Usage: ManualPage.sh YH_COMMAND MANUAL_PAGE
set -euo pipefail
yh=$1 page=$2

fail() { echo "FAIL: $*" >&2; exit 1; }

warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)
[ -z "$warnings" ] || fail "man warns about $page:"$'\n'"$warnings"

synopsis=$(LC_ALL=C MANWIDTH=1000 man -l "$page" 2>/dev/null | col -b |
           sed -n '/^SYNOPSIS/,/^[A-Z]/p' | sed -n 's/^ *\(yh .*\)$/\1/p')
options() { grep -oE -- '--[a-z][a-z-]*' | grep -vx -- '--help' | sort -u; }

commands=$("$yh" --help | sed -n '/^Subcommands:/,/^$/p' | awk 'NR > 1 && NF { print $1 }' | sort)
[ -n "$commands" ] || fail "yh --help lists no command"
documented=$(sed -n 's/^yh \([a-z][a-z-]*\)\( .*\)\{0,1\}$/\1/p' <<<"$synopsis" | sort -u)
[ "$commands" = "$documented" ] || fail "yh --help has the commands"$'\n'"$commands"$'\n'"the manual page"$'\n'"$documented"

for command in $commands; do
  help=$("$yh" "$command" --help | options)
  manual=$(grep -E "^yh $command( |$)" <<<"$synopsis" | options)
  [ "$help" = "$manual" ] ||
    fail "yh $command --help has the options"$'\n'"$help"$'\n'"the manual page"$'\n'"$manual"
done
global_help=$("$yh" --help | sed '/^Subcommands:/,$d' | options)
global_manual=$(grep -E '^yh --' <<<"$synopsis" | options)
[ "$global_help" = "$global_manual" ] ||
  fail "yh --help has the options"$'\n'"$global_help"$'\n'"the manual page"$'\n'"$global_manual"
echo "manual page: no warnings; commands and options as in --help: $(echo $commands)"
