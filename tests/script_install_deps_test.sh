#!/usr/bin/env bash
# install-deps.sh and fuzz-amplitude.sh as a user who is not root, on a PATH
# of stand-ins: `id` says uid 1000, dpkg-query finds nothing installed, sudo
# clears the environment as the real one does, and apt-get records what it
# was called with. Nothing is installed.
set -euo pipefail
repo=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin" "$work/bin-nosudo"
for tool in bash env grep dirname mkdir cat; do
  ln -s "$(command -v "$tool")" "$work/bin/$tool"
  ln -s "$(command -v "$tool")" "$work/bin-nosudo/$tool"
done
stub() { printf '#!%s\n%s\n' "$(command -v bash)" "$2" >"$work/bin/$1"; chmod +x "$work/bin/$1"; }
stub id 'echo 1000'
stub dpkg-query 'exit 1'
stub apt-get "echo \"apt-get \$1 DEBIAN_FRONTEND=\${DEBIAN_FRONTEND:-unset}\" >>$work/log"
stub sudo 'vars=(); while [[ $1 == *=* ]]; do vars+=("$1"); shift; done; exec env -i PATH="$PATH" "${vars[@]}" "$@"'
cp "$work/bin/id" "$work/bin/dpkg-query" "$work/bin-nosudo/"

fail=0
check() { if [ "$2" != "$3" ]; then echo "FAIL: $1: got [$2], expected [$3]"; fail=1; fi; }
expected=$'apt-get update DEBIAN_FRONTEND=noninteractive\napt-get install DEBIAN_FRONTEND=noninteractive'

# Through sudo, apt-get still sees DEBIAN_FRONTEND.
for script in install-deps.sh fuzz-amplitude.sh; do
  rm -f "$work/log"
  PATH="$work/bin" bash "$repo/scripts/$script" >/dev/null 2>&1 || true
  check "$script through sudo" "$(cat "$work/log" 2>/dev/null)" "$expected"
done

# Without sudo: a message saying what to run, status 1, no apt-get.
rm -f "$work/log"
status=0
message=$(PATH="$work/bin-nosudo" bash "$repo/scripts/install-deps.sh" 2>&1) || status=$?
check "status without sudo" "$status" 1
check "says sudo is missing" "$(grep -c 'sudo is not installed' <<<"$message")" 1
check "says what to run as root" "$(grep -c "su -c 'apt-get update && apt-get install" <<<"$message")" 1
check "no apt-get without sudo" "$(cat "$work/log" 2>/dev/null)" ""
[ $fail -eq 0 ] && echo "ok: install-deps.sh and fuzz-amplitude.sh pass DEBIAN_FRONTEND through sudo and explain a missing sudo"
exit $fail
