#!/bin/bash
# Proves what the tests under Wine expect of run-under-wine and wine-prefix, with Wine's own cmd.exe.
set -uo pipefail
scripts=$(dirname "$(readlink -f "$0")")/../..
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1

failures=0
expect() {
    local what="$1" expected="$2" actual="$3"
    if [ "$expected" = "$actual" ]; then
        echo "ok: $what"
    else
        echo "FAILED: $what: expected '$expected', got '$actual'"
        failures=$((failures + 1))
    fi
}
# A separate cache, so that other runs on this machine aren't counted here.
template=$("$scripts/wine-prefix" template) || exit 1
own="$work/cache/$(basename "$(dirname "$template")")"
mkdir -p "$own"
cp -al "$template" "$own/template" 2>/dev/null || { rm -rf "$own/template"; cp -a "$template" "$own/template"; }
export TANDREL_CACHE="$work/cache"

wine_run() { "$scripts/run-under-wine" "$@"; }
clones() { find "$own" -maxdepth 1 -name 'run.*' | wc -l; }

wine_run cmd /c 'exit 7' >/dev/null
expect "the exit code is the program's" 7 $?

expect "input and output pass through" "from outside" \
    "$(echo 'from outside' | wine_run cmd /v:on /c 'set /p line=& echo !line!' | tr -d '\r')"

started=$SECONDS
TANDREL_WINE_TIMEOUT=2 wine_run ping -n 30 127.0.0.1 >/dev/null 2>&1 </dev/null
expect "a program over its limit is ended with 124" 124 $?
expect "and long before its own end" yes "$([ $((SECONDS - started)) -lt 25 ] && echo yes || echo no)"

wine_run cmd /c 'echo x> C:\left.txt' && wine_run cmd /c 'if exist C:\left.txt exit 1'
expect "two runs share nothing" 0 $?

"$scripts/wine-prefix" create "$work/shared"
export TANDREL_WINE_PREFIX="$work/shared"
wine_run cmd /c 'echo x> C:\left.txt' && wine_run cmd /c 'if exist C:\left.txt exit 9'
expect "runs in one prefix share its drive" 9 $?
expect "which is below the prefix directory" yes "$([ -f shared/prefix/drive_c/left.txt ] && echo yes)"
unset TANDREL_WINE_PREFIX
"$scripts/wine-prefix" wait "$work/shared"
expect "waiting for an idle prefix succeeds" 0 $?
"$scripts/wine-prefix" destroy "$work/shared"
expect "a destroyed prefix is gone" no "$([ -e shared ] && echo yes || echo no)"
"$scripts/wine-prefix" destroy "$work" 2>/dev/null
expect "another directory is not destroyed" "1 yes" "$? $([ -d "$work" ] && echo yes)"

expect "no run leaves its prefix" 0 "$(clones)"
"$scripts/run-under-wine" ping -n 60 127.0.0.1 >/dev/null 2>&1 </dev/null &
victim=$!
until [ -e "$own"/run.*/prefix/drive_c/windows ]; do sleep 0.1; done
kill -KILL "$victim"
wait "$victim" 2>/dev/null
expect "a killed run leaves its prefix" 1 "$(clones)"
wine_run cmd /c 'exit 0' >/dev/null
expect "and the next run removes it" 0 "$(clones)"

[ "$failures" -eq 0 ]
