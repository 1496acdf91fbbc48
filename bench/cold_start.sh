#!/usr/bin/env bash
# Cold start of the command-line client: whole-process wall time and peak memory of
# `qmv home` (start-up, automatic login, the home requests) against the embedded sandbox,
# each run with a fresh temporary home. Prints every run and the medians.
#
# usage: bench/cold_start.sh [path/to/qmv] [runs]
# Targets on the reference machine: 150 ms wall, 30 MB peak resident memory.
set -euo pipefail

QMV=${1:-build/release/apps/qmv}
RUNS=${2:-7}
TIME=/usr/bin/time

if [[ ! -x "$QMV" ]]; then
  echo "no qmv binary at $QMV (build the qmv target first)" >&2
  exit 2
fi
if [[ ! -x "$TIME" ]]; then
  echo "$TIME is needed (Debian package 'time')" >&2
  exit 2
fi

walls=()
rss=()
for ((i = 1; i <= RUNS; i++)); do
  home=$(mktemp -d /tmp/qmv-cold-XXXXXX)
  report=$(mktemp /tmp/qmv-cold-time-XXXXXX)
  status=0
  "$TIME" -v "$QMV" --home "$home" home >/dev/null 2>"$report" || status=$?
  wall=$(awk -F': ' '/Elapsed \(wall clock\)/ {print $2}' "$report")
  kb=$(awk -F': ' '/Maximum resident set size/ {print $2}' "$report")
  # h:mm:ss or m:ss.cc -> milliseconds
  ms=$(awk -v t="$wall" 'BEGIN { n = split(t, p, ":"); s = 0; for (i = 1; i <= n; i++) s = s * 60 + p[i]; printf "%d", s * 1000 + 0.5 }')
  printf 'run %d: exit %d, %d ms, %.1f MB\n' "$i" "$status" "$ms" "$(awk -v k="$kb" 'BEGIN { print k / 1024 }')"
  walls+=("$ms")
  rss+=("$kb")
  rm -rf "$home" "$report"
done

median() { printf '%s\n' "$@" | sort -n | awk '{ a[NR] = $1 } END { print (NR % 2) ? a[(NR + 1) / 2] : (a[NR / 2] + a[NR / 2 + 1]) / 2 }'; }
wall_median=$(median "${walls[@]}")
rss_median=$(median "${rss[@]}")
printf 'median over %d runs: %s ms wall (target 150), %.1f MB peak RSS (target 30)\n' "$RUNS" "$wall_median" \
  "$(awk -v k="$rss_median" 'BEGIN { print k / 1024 }')"
