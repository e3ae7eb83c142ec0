#!/bin/sh
# Compares `bgp-communities mrt --routes` with an independent MRT reader, Debian's
# `bgpdump -m -l`, route by route: kind of line, peer, prefix, and the sets of
# standard and of large communities.
#
#   compare_with_bgpdump.sh FILE...
#
# The tool is taken from $BGP_COMMUNITIES (default: bgp-communities in PATH).
# Prints one line of figures for each file; exit status 1 if any file differs.
set -eu
export LC_ALL=C

tool=${BGP_COMMUNITIES:-bgp-communities}
[ $# -gt 0 ] || { echo "usage: $0 FILE..." >&2; exit 2; }
for program in "$tool" bgpdump awk; do
  command -v "$program" >/dev/null || { echo "$0: no $program" >&2; exit 2; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Both become: action|peer|peer AS|prefix|sorted communities|sorted large ones.  Sets are
# compared by value: the two order members, and name some, in their own ways.
# bgpdump: type|seconds|action|peer|AS|prefix|path|origin|next hop|local
# preference|metric|communities|large communities; TABLE_DUMP2_AP has a path
# identifier behind the prefix.
cat >"$work/common.awk" <<'EOF'
BEGIN {
  named["internet"] = "0:0"
  named["GSHUT"] = "65535:0"
  named["llgr-stale"] = "65535:6"
  named["no-llgr"] = "65535:7"
  named["no-export"] = "65535:65281"
  named["no-advertise"] = "65535:65282"
  named["local-as"] = named["local-AS"] = "65535:65283"
}
# A name that is not known here stays, so that it shows as a difference.
function normalised(text,    count, parts, words, wordCount, value, i, j, last, result) {
  count = split(text, parts, " ")
  for (i = 1; i <= count; i++) {
    if (parts[i] in named) parts[i] = named[parts[i]]
    wordCount = split(parts[i], words, ":")
    if (wordCount != 2 && wordCount != 3) return text
    value[i] = ""
    for (j = 1; j <= wordCount; j++) value[i] = value[i] sprintf(":%010d", words[j])
    for (j = i; j > 1 && value[j - 1] > value[j]; j--) {
      last = value[j]; value[j] = value[j - 1]; value[j - 1] = last
    }
  }
  result = last = ""
  for (i = 1; i <= count; i++) {
    if (value[i] != last) result = result (result == "" ? "" : " ") value[i]
    last = value[i]
  }
  return result
}
EOF
cat >"$work/bgpdump.awk" <<'EOF'
$3 == "W" { print $3 "|" $4 "|" $5 "|" $6 "||" }
$3 == "A" || $3 == "B" {
  shift = $1 == "TABLE_DUMP2_AP" ? 1 : 0
  print $3 "|" $4 "|" $5 "|" $6 "|" \
    normalised($(12 + shift)) "|" normalised($(13 + shift))
}
EOF
cat >"$work/ours.awk" <<'EOF'
{ print $2 "|" $3 "|" $4 "|" $5 "|" normalised($6) "|" normalised($7) }
EOF

lines() { grep -c "$1" "$2" || true; }

differing=0
for file; do
  bgpdump -m -l "$file" 2>/dev/null >"$work/raw"
  awk -F'|' -f "$work/common.awk" -f "$work/bgpdump.awk" "$work/raw" | sort >"$work/theirs"
  [ -s "$work/theirs" ] || { echo "$0: bgpdump finds no routes in $file" >&2; exit 2; }
  "$tool" mrt --routes "$file" >"$work/raw"
  awk -F'|' -f "$work/common.awk" -f "$work/ours.awk" "$work/raw" | sort >"$work/ours"
  comm -3 "$work/theirs" "$work/ours" >"$work/difference"
  printf '%s: announced and table entries %s (bgpdump %s), withdrawn %s (%s), ' "$file" \
    "$(lines '^[AB]' "$work/ours")" "$(lines '^[AB]' "$work/theirs")" \
    "$(lines '^W' "$work/ours")" "$(lines '^W' "$work/theirs")"
  printf 'with communities %s (%s), with large ones %s (%s), lines that differ %s\n' \
    "$(lines '^[AB].*|[^|][^|]*|[^|]*$' "$work/ours")" \
    "$(lines '^[AB].*|[^|][^|]*|[^|]*$' "$work/theirs")" \
    "$(lines '^[AB].*|[^|][^|]*$' "$work/ours")" \
    "$(lines '^[AB].*|[^|][^|]*$' "$work/theirs")" "$(wc -l <"$work/difference" | tr -d ' ')"
  if [ -s "$work/difference" ]; then
    differing=1
    head -n 10 "$work/difference"
  fi
done
exit "$differing"
