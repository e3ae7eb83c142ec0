#!/usr/bin/env bash
# Completes words as bash does and compares the answers. Also checks that every long option in the
# tool's help texts is completed.
#
#   completion-test.bash COMPLETION TOOL
set -eu
# shellcheck source=/dev/null
source "$1"
tool=$(realpath "$2")
failures=0

# complete_words WORD...: the answers for the last word, on one line.
complete_words() {
  COMP_WORDS=(bgp-communities "$@")
  COMP_CWORD=$#
  COMPREPLY=()
  _bgp_communities
  echo "${COMPREPLY[*]}"
}

# expect ANSWERS WORD...
expect() {
  local expected=$1 got
  shift
  got=$(complete_words "$@")
  if [ "$got" != "$expected" ]; then
    echo "$*: '$got', not '$expected'"
    failures=$((failures + 1))
  fi
}

expect 'mrt show attribute store --help --version' ''
expect 'mrt' m
expect '--version' --v
expect '--prefix --peer' mrt --p
expect 'standard' mrt --kind s
expect 'large' mrt --routes --kind l
expect '' mrt --match a
expect 'no-export no-export-subconfed' show no-e
expect '--asdot' show 1:2 --a
expect '--json' attribute --j
expect 'write read info remove --help' store ''
expect '--churn' store write --c
cd "$(mktemp -d)"
trap 'rm -r "$PWD"' EXIT
touch 'a file' 'another'
expect 'a file another' mrt --routes a
expect 'another' store read an

# Every command and every long option that the help of `COMMAND...` names.
names() {
  "$tool" "$@" --help | sed -nE '/^Subcommands:/,/^$/s/^  ([a-z]+) .*/\1/p
    s/^  (-h,)?(--[a-z-]+).*/\2/p'
}
expect_all() {
  local name found=0
  for name in $(names "$@"); do
    expect "$name" "$@" "$name"
    found=1
    [[ $name == -* ]] || expect_all "$@" "$name"
  done
  [ "$found" -eq 1 ] || { echo "no names: $*"; failures=$((failures + 1)); }
}
expect_all

[ "$failures" -eq 0 ]
