#!/usr/bin/env bash
# Wall time of a purchase from the command line: `qmv buy` end to end (start-up, automatic
# login, the offer, submit, pay now, the wallet stand-in completing the payment at the
# embedded sandbox and returning through the inbound URL). "fresh": each run in a new home
# that has only been logged in; "warm": every run in one home. Prints every run and the
# medians.
#
# usage: bench/buy_wall_time.sh [path/to/qmv] [runs]
set -euo pipefail

QMV=${1:-build/release/apps/qmv}
RUNS=${2:-7}
OFFER=5
BUY=(buy "$OFFER" --no-balance --channel alipay)

if [[ ! -x "$QMV" ]]; then
  echo "no qmv binary at $QMV (build the qmv target first)" >&2
  exit 2
fi

now_ms() { date +%s%3N; }
median() { printf '%s\n' "$@" | sort -n | awk '{ a[NR] = $1 } END { print (NR % 2) ? a[(NR + 1) / 2] : (a[NR / 2] + a[NR / 2 + 1]) / 2 }'; }

# One timed purchase in home $1; prints its milliseconds, fails when it did not pay.
timed_buy() {
  local start end
  start=$(now_ms)
  "$QMV" --home "$1" "${BUY[@]}" >/dev/null
  end=$(now_ms)
  echo $((end - start))
}

fresh=()
for ((i = 1; i <= RUNS; i++)); do
  home=$(mktemp -d /tmp/qmv-buy-XXXXXX)
  "$QMV" --home "$home" login 13800000000 qmv123 >/dev/null
  ms=$(timed_buy "$home")
  printf 'fresh run %d: %d ms\n' "$i" "$ms"
  fresh+=("$ms")
  rm -rf "$home"
done

home=$(mktemp -d /tmp/qmv-buy-XXXXXX)
"$QMV" --home "$home" login 13800000000 qmv123 >/dev/null
"$QMV" --home "$home" "${BUY[@]}" >/dev/null
warm=()
for ((i = 1; i <= RUNS; i++)); do
  ms=$(timed_buy "$home")
  printf 'warm run %d: %d ms\n' "$i" "$ms"
  warm+=("$ms")
done
rm -rf "$home"

printf 'qmv buy median over %d runs: %s ms fresh home, %s ms warm home\n' "$RUNS" "$(median "${fresh[@]}")" \
  "$(median "${warm[@]}")"
