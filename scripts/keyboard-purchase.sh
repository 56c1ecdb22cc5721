#!/usr/bin/env bash
# Types a purchase as a user would, keyboard only, into the program running
# under Xvfb, and checks that it reached the database, the raw view and the
# holdings. Needs a built dev tree (./test.sh) and xdotool, Xvfb, ImageMagick.
#   scripts/keyboard-purchase.sh [build-dir]     screenshots go to build/keyboard-purchase/
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/dev}
out=build/keyboard-purchase
app=$(mktemp -d)
trap 'rm -rf "$app"' EXIT
mkdir -p "$out"
cp "$build/src/app/tessaly" "$app/"
"$build/tools/makedb/tessaly-makedb" "$app/user2.mdb"
"$build/tools/demodata/tessaly-demodata" "$app" --account >/dev/null

cat > "$app/drive.sh" <<'DRIVE'
set -e
cd "$1"; out=$2
./tessaly & pid=$!
login=$(xdotool search --sync --name "登录--Tessaly" | head -1)
xdotool windowfocus --sync "$login"; sleep 0.3
xdotool type --delay 30 demo; xdotool key Tab; xdotool type --delay 30 demo; xdotool key Return
main=$(xdotool search --sync --name "的帐户管理" | head -1)
xdotool windowfocus --sync "$main"; sleep 0.3
xdotool key space                      # 买人股票 has the focus
buy=$(xdotool search --sync --name "  买入" | head -1)
xdotool windowfocus --sync "$buy"; sleep 0.3
xdotool key Return                     # date -> code
xdotool type --delay 30 600000; xdotool key Return; sleep 0.3   # the name is filled in
xdotool key Return                     # keep the name
xdotool type --delay 30 10.5; xdotool key Return
xdotool type --delay 30 100; xdotool key Return
xdotool type --delay 30 "keyboard test"; xdotool key Return   # focus to 确认
xdotool key space; sleep 1
import -window root "$out/after-confirm.png"
xdotool key Escape; sleep 0.5
xdotool windowfocus --sync "$main"; sleep 0.3
xdotool key Tab Tab Tab Tab space; sleep 1   # 持股列表
import -window root "$out/holdings.png"
kill $pid
DRIVE
xvfb-run -a -s "-screen 0 1280x800x24" bash "$app/drive.sh" "$app" "$PWD/$out"

rows=$(sqlcipher "$app/user2.mdb" "PRAGMA key='qtr.vemblox.nzk';" \
  "select 股票代码||' '||股票名称||' '||成交价格||' '||成交股数||' '||操作记录 from havewhat where 操作原因='keyboard test';" | tail -n +1)
echo "stored: $rows"
case "$rows" in
  *"600000 浦发银行 10.5 100.0 买进"*) echo "keyboard purchase: ok (screenshots in $out)" ;;
  *) echo "keyboard purchase: NOT stored as typed"; exit 1 ;;
esac
