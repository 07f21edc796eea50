# Completes command lines as bash does: completion.bash TELVO_CLI COMPLETIONS CASE
# Every option that the help of a command names has to be completed.
program=$1 completions=$2 case_file=$3
telvo-cli() { "$program" "$@"; }
source "$completions/telvo-cli.bash" || exit 1
failed=0

# completed WORD...: what the last word becomes, in one line
completed() {
    COMP_WORDS=(telvo-cli "$@") COMP_CWORD=$#
    _telvo_cli
    echo "${COMPREPLY[*]}"
}
expect() {
    local expected=$1
    shift
    local found
    found=$(completed "$@")
    [ "$found" = "$expected" ] || { echo "telvo-cli $*: \"$found\" instead of \"$expected\""; failed=1; }
}

commands=$(telvo-cli --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[ "$(wc -w <<< "$commands")" -ge 9 ] || { echo "commands: $commands"; failed=1; }
expect "$(echo $commands)" ""
for command in $commands "table export" "table import" "table template"; do
    options=$(telvo-cli $command --help | grep -oE '^  -[^ ]+' | tr , ' ' | xargs)
    expect "$options" $command -
done
expect "--digits" explain "$case_file" --d
expect "export" table exp
expect "english metric" new x.TLV --units ""
expect "0 1 2" report "$case_file" --round-sf ""
expect "lbs tons" report "$case_file" --force-units ""
expect "" report pan
expect "BarrierSF.retreat.first BarrierSF.retreat.second" explain --digits 9 "$case_file" BarrierSF.retreat.
expect "" explain "$case_file" BarrierSF.retreat.first ""

for shell in zsh fish; do
    [ -z "$(command -v $shell)" ] || $shell -n "$completions/telvo-cli.$shell" || failed=1
done
exit $failed
