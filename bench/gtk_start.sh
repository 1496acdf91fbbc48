#!/usr/bin/env bash
# Cold start of the graphical client: time from process start to the first frame painted
# with the home content (banners, stores) in it, and peak resident memory, against the
# embedded sandbox with a fresh home each run. A first start shows the first-run guide
# instead of the tabs and fetches the whole area table, so each home is started once by
# the CLI's home screen (same home, same settings) before the measured start, which is
# then a returning member's. Runs under Xvfb when no display is set.
#
# The client quits once the home is drawn and its area refresh (request and cache rebuild)
# has ended, so the peak covers the whole start, not only the part before the first frame.
# The embedded sandbox runs in the client's process: what it does to answer (the whole area
# table at a first start) counts in the peak too.
#
# usage: bench/gtk_start.sh [path/to/qmv-gtk] [runs]
#   QMV_BENCH_PICTURES=1: to the home drawn with all its pictures (banners, thumbnails),
#   each start with an empty picture cache, as a first start has.
#   QMV_BENCH_FIRST=1: a member's first start with the tabs: the home is prepared by the
#   CLI's city list (past the first-run guide, nothing fetched), so the measured start
#   fetches the whole area table and builds its cache. With pictures, only the sandbox's
#   data (its pictures drawn) comes from the template.
# Targets on the reference machine: 400 ms to the home drawn, 120 MB peak resident memory;
# with its pictures 300 ms and 100 MB on a quiet 2-core machine, first and returning starts alike.
set -euo pipefail

GUI=${1:-build/release/apps/qmv-gtk}
RUNS=${2:-7}
CLI=$(dirname "$GUI")/qmv
TIME=/usr/bin/time
if [[ ! -x "$GUI" ]]; then
  echo "no qmv-gtk binary at $GUI (build the qmv-gtk target first)" >&2
  exit 2
fi
if [[ ! -x "$TIME" ]]; then
  echo "$TIME is needed (Debian package 'time')" >&2
  exit 2
fi

run_all() {
  local draws=() rss=() quit=1
  [[ "${QMV_BENCH_PICTURES:-0}" = 1 ]] && quit=pictures
  local prepare=home
  [[ "${QMV_BENCH_FIRST:-0}" = 1 ]] && prepare=city
  local template=""
  if [[ $quit = pictures ]]; then
    # The sandbox draws each picture on its first request, as a server would have it on
    # disk: one start draws them all in a home that every run then copies.
    template=$(mktemp -d /tmp/qmv-gtk-template-XXXXXX)
    "$CLI" --home "$template" "$prepare" >/dev/null
    QMV_GTK_QUIT_WHEN_HOME_DRAWN=pictures timeout 120 "$GUI" --home "$template" --at 35.0606,118.3425 >/dev/null
  fi
  for ((i = 1; i <= RUNS; i++)); do
    home=$(mktemp -d /tmp/qmv-gtk-cold-XXXXXX)
    if [[ -n $template && $prepare = city ]]; then
      # The client's side as the city list left it (no area table, templates or pictures
      # stored); the server's side, with its pictures drawn, from the template.
      "$CLI" --home "$home" city >/dev/null
      rm -rf "$home/sandbox"
      cp -a "$template/sandbox" "$home/"
    elif [[ -n $template ]]; then
      cp -a "$template/." "$home/"
      rm -rf "$home/Library/Caches/images"
    else
      # Past the first-run guide: the member has started the application once.
      "$CLI" --home "$home" "$prepare" >/dev/null
    fi
    report=$(mktemp /tmp/qmv-gtk-cold-time-XXXXXX)
    start=$(date +%s%3N)
    drawn=$(QMV_GTK_QUIT_WHEN_HOME_DRAWN=$quit timeout 60 "$TIME" -v "$GUI" --home "$home" --at 35.0606,118.3425 2>"$report" |
      awk '/^home drawn at/ {print $4}')
    kb=$(awk -F': ' '/Maximum resident set size/ {print $2}' "$report")
    if [[ -z "$drawn" ]]; then
      echo "run $i: the home was not drawn" >&2
      sed -n 1,20p "$report" >&2
      exit 1
    fi
    ms=$((drawn - start))
    printf 'run %d: home drawn after %d ms, %.1f MB peak RSS\n' "$i" "$ms" "$(awk -v k="$kb" 'BEGIN { print k / 1024 }')"
    draws+=("$ms")
    rss+=("$kb")
    rm -rf "$home" "$report"
  done
  [[ -n $template ]] && rm -rf "$template"
  median() { printf '%s\n' "$@" | sort -n | awk '{ a[NR] = $1 } END { print (NR % 2) ? a[(NR + 1) / 2] : (a[NR / 2] + a[NR / 2 + 1]) / 2 }'; }
  printf 'median over %d runs: %s ms to the home drawn, %.1f MB peak RSS\n' "$RUNS" \
    "$(median "${draws[@]}")" "$(awk -v k="$(median "${rss[@]}")" 'BEGIN { print k / 1024 }')"
}

if [[ -z "${DISPLAY:-}" && -z "${WAYLAND_DISPLAY:-}" ]]; then
  exec xvfb-run -a -s "-screen 0 1024x768x24" bash -c "GUI='$GUI' CLI='$CLI' RUNS='$RUNS' TIME='$TIME' QMV_BENCH_PICTURES='${QMV_BENCH_PICTURES:-0}' QMV_BENCH_FIRST='${QMV_BENCH_FIRST:-0}'; $(declare -f run_all); run_all"
fi
run_all
