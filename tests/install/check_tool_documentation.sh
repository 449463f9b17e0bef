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

# complete WORD...: what bash offers for the last word.
complete_words() {
    COMP_TYPE=${COMP_TYPE-} bash -c '. "$1"; shift
        COMP_WORDS=("$@"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
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
if complete_words npxlate result span_ | grep -v '^span_' >/dev/null; then
    echo "Completes to what does not start with span_." >&2
    exit 1
fi
COMP_TYPE=63 offers "22  SPAN forwarding (mirroring)" npxlate result 2
if command -v zsh >/dev/null; then
    zsh -n "$packaging/completions/_npxlate"
fi
