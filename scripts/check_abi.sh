#!/usr/bin/env bash
# usage: check_abi.sh [--update] LIBRARIES BASELINES
#
# Compares the ABI of the libraries in the folder LIBRARIES, which were built with
# debug information, with what is kept in the folder BASELINES; --update writes
# that instead.  CONTRIBUTING.md says who may.
set -euo pipefail

update=0
if [ "$1" = --update ]; then
  update=1
  shift
fi
libraries=$1 baselines=$2
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# What our headers do not define is not our promise.
ours=() theirs=()
for folder in platform OvBgp BgpCommon; do
  ours+=(--headers-dir "$top/$folder")
  theirs+=(--headers-dir2 "$top/$folder")
done
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

describe() {
  abidw --no-show-locs --no-corpus-path --no-comp-dir-path --type-id-style hash \
    --drop-private-types "${ours[@]}" --out-file "$2" "$1"
}

status=0
for library in OvPlatform OvBgpCommunity; do
  baseline=$baselines/$library.abi.xz
  abi=$scratch/$library.abi
  if [ $update -eq 1 ]; then
    describe "$libraries/lib$library.so" "$abi"
    xz -9e -c "$abi" >"$baseline"
  else
    xz -dc "$baseline" >"$abi"
    abidiff --drop-private-types "${theirs[@]}" \
      "$abi" "$libraries/lib$library.so" || status=1
  fi
done
exit $status
