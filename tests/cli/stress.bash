# Two calls at once and calls that are interrupted: stress.bash TELVO_CLI EXAMPLES ROUNDS
# No case may be lost, none may be half, and no temporary file may stay.
cli=$1 examples=$2 rounds=$3
a=$examples/deep-cover.TLV b=$examples/two-side-gobs.TLV
folder=$(mktemp -d) && cd "$folder" || exit 1
trap 'rm -rf "$folder"' EXIT
failed=0
fail() { echo "$*"; failed=1; }

lost=0
for command in "save $a -o n.TLV:save $b -o n.TLV" "new n.TLV:convert $a -o n.TLV" \
               "results $a -o n.TLV:results $b -o n.TLV" "report $a -o n.TLV:save $b -o n.TLV"; do
    for ((round = 0; round < rounds; ++round)); do
        rm -f n.TLV
        "$cli" ${command%%:*} 2>/dev/null & first=$!
        "$cli" ${command##*:} 2>/dev/null & second=$!
        good=0
        wait $first && good=$((good + 1))
        wait $second && good=$((good + 1))
        [ $good = 1 ] || lost=$((lost + 1))
    done
done
echo "$((4 * rounds)) pairs that write one new name: $lost in which not exactly one succeeded"
[ $lost = 0 ] || failed=1

# An import that is interrupted leaves whole cases only, and can be run again.
"$cli" table export $(for ((i = 0; i < 400; ++i)); do echo "$a"; done) -o t.csv || fail "export"
"$cli" save "$a" -o whole.TLV
stopped=0
for ((round = 0; round < rounds; ++round)); do
    for signal in INT TERM HUP; do
        rm -rf out
        # A shell without job control has its children ignore the interrupt.
        (set -m; exec "$cli" table import t.csv -o out > /dev/null) & import=$!
        sleep "0.0$((RANDOM % 9))$((RANDOM % 10))"
        kill -$signal $import 2>/dev/null
        { wait $import; } 2> /dev/null && continue
        stopped=$((stopped + 1))
        [ -d out ] || continue
        [ -z "$(find out -name '.*.tmp')" ] || fail "$signal left temporary files"
        for file in out/*.TLV; do
            [ ! -e "$file" ] || cmp -s "$file" whole.TLV || { fail "$signal left half of $file"; break; }
        done
    done
done
"$cli" table import t.csv -o out > summary || fail "import"
[ "$(find out -type f | wc -l)" = 400 ] || fail "$(tail -1 summary), $(find out -type f | wc -l) files"
echo "$((3 * rounds)) interrupted imports, $stopped of them in time"
exit $failed
