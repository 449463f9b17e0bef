#!/usr/bin/env bash
# The manual page and the completions against what the tool says of itself: check_tool_documentation.sh TOOL PACKAGING
set -euo pipefail
export LC_ALL=C

tool=$1 packaging=$2
PATH=$(dirname "$tool"):$PATH
export PATH

commands=$("$tool" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z][a-z]*\) .*/\1/p' | sort)
[ -n "$commands" ] || { echo "The tool names no commands." >&2; exit 1; }

# The page's list of commands.
documented=$(sed -n '/^\.Sh COMMANDS/,/^\.El/s/^\.It Cm //p' "$packaging/npxlate.1" | sort)
diff <(echo "$commands") <(echo "$documented") ||
    { echo "The manual page names other commands than the tool (< tool, > page)." >&2; exit 1; }

# Every option of a command is on the page, and the page has no other.
options=$(for command in "" $commands "names import" "names list"; do
    # shellcheck disable=SC2086
    "$tool" $command --help | sed -n '/^Options:/,/^$/p' | grep -oE '^  .*--[a-z][a-z-]*' | grep -oE -- '--[a-z][a-z-]*'
done | sort -u)
documented=$(sed -n '/^\.Sh OPTIONS/,/^\.Sh ENVIRONMENT/p' "$packaging/npxlate.1" | grep '^\.It' | grep -oE 'Fl Fl [a-z-]+' |
    sed 's/Fl Fl /--/' | sort -u)
diff <(echo "$options") <(echo "$documented") ||
    { echo "The manual page has other options than the tool (< tool, > page)." >&2; exit 1; }

# Its statuses: those that the tool ends with, for what the page says.
status() {
    local expected=$1 actual=0
    shift
    "$tool" "$@" >/dev/null 2>&1 </dev/null || actual=$?
    [ "$actual" -eq "$expected" ] || { echo "$* ends with $actual, not $expected." >&2; exit 1; }
    grep -qx ".It $expected" "$packaging/npxlate.1" || { echo "The page has no status $expected." >&2; exit 1; }
}
zeros=$(printf '%064d' 0)
status 0 result 53 "01${zeros:2}"
status 1 result 53 "$zeros"
status 1 explain 53 "$zeros"
status 1 roundtrip 53 "$zeros"
status 2 result 53 00
status 0 diff 53 "01${zeros:2}" "01${zeros:2}"
status 1 diff 53 "01${zeros:2}" "02${zeros:2}"
status 2 diff 53 "01${zeros:2}" "$zeros"
status 1 batch -o /nonexistent/file

# complete WORD...: what bash offers for the last word.
complete_words() {
    COMP_TYPE=${COMP_TYPE-} bash -c '. "$1"; shift
        COMP_WORDS=("$@"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); COMP_LINE="$*"; COMP_LINE=${COMP_LINE// : /:}; COMP_POINT=${#COMP_LINE}
        _npxlate; printf "%s\n" "${COMPREPLY[@]}"' bash "$packaging/completions/npxlate" "$@"
}

# offers EXPECTED WORD...
offers() {
    local expected=$1
    shift
    complete_words "$@" | grep -xe "$expected" >/dev/null || { echo "$* is not completed to $expected." >&2; exit 1; }
}

diff <(echo "$commands") <(complete_words npxlate "" | sort) ||
    { echo "Other commands are completed than the tool has (< tool, > completed)." >&2; exit 1; }
offers --json npxlate tables --
offers 107 npxlate result 10
offers span_fwd_st_xlate_result npxlate result span_
offers resolve npxlate registers re
offers reverse npxlate explain --role re
offers egr_port_xlate_key npxlate explain --role key egr
offers egr_port_xlate_key npxlate key --json egr
offers span_fwd_st_xlate_result npxlate result -f entry.hex span_
offers result: npxlate batch --raw re
offers lag_type_xlate_key npxlate batch --raw key : lag_type
offers key:lag_type_xlate_key npxlate batch --raw key:lag_type  # where a colon begins no word
offers omit npxlate batch --rejected o
offers 4be npxlate key 5 --words 4
offers "$packaging/npxlate.1" npxlate key 5 --file "$packaging/npxl"
offers "$packaging/npxlate.1" npxlate atlas "$packaging/npxl"
if complete_words npxlate key span_ | grep -v "_key$" >/dev/null; then
    echo "Completes a key translator to one of another role." >&2
    exit 1
fi
if complete_words npxlate result span_ | grep -v '^span_' >/dev/null; then
    echo "Completes to what does not start with span_." >&2
    exit 1
fi
COMP_TYPE=63 offers "22  SPAN forwarding (mirroring)" npxlate result 2
if command -v zsh >/dev/null; then
    zsh -n "$packaging/completions/_npxlate"
fi
