#include "cli/completion/ShellScripts.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vrx::cli {

namespace {

struct ShellScript {
    std::string_view shell;
    const char* text;
};

constexpr const char* BASH = R"(# bash completion of vrx-inventory

_vrx_inventory() {
    local kind candidate
    COMPREPLY=()
    {
        IFS= read -r kind
        while IFS= read -r candidate; do
            COMPREPLY+=("$candidate")
        done
    } < <("$1" __complete bash "${COMP_LINE:0:COMP_POINT}" "$2" 2>/dev/null)
    case $kind in
        files) mapfile -t COMPREPLY < <(compgen -f -- "$2") ;;
        xml) mapfile -t COMPREPLY < <(compgen -f -X '!*.xml' -- "$2"; compgen -d -- "$2") ;;
        folders) mapfile -t COMPREPLY < <(compgen -d -- "$2") ;;
        *)
            [[ ${COMPREPLY[0]} == *: ]] && compopt -o nospace 2>/dev/null
            return
            ;;
    esac
    compopt -o filenames 2>/dev/null
}

complete -F _vrx_inventory vrx-inventory
)";

constexpr const char* ZSH = R"(#compdef vrx-inventory

_vrx-inventory() {
    local kind line
    local -a lines candidates shown
    lines=("${(@f)$("${(Q)words[1]}" __complete words "${(@Q)words[2,CURRENT]}" 2>/dev/null)}")
    kind=$lines[1]
    shift lines
    [[ $kind != words && $PREFIX == --*=* ]] && compset -P '*='
    case $kind in
        files) _files; return ;;
        xml) _files -g '*.xml(-.)'; return ;;
        folders) _files -/; return ;;
    esac
    for line in "${lines[@]}"; do
        candidates+=("${line%%$'\t'*}")
        shown+=("${line/$'\t'/  -- }")
    done
    compadd -l -d shown -a candidates
}

if [[ $funcstack[1] == _vrx-inventory ]]; then
    _vrx-inventory "$@"
else
    compdef _vrx-inventory vrx-inventory
fi
)";

constexpr const char* FISH = R"(# fish completion of vrx-inventory

function __vrx_inventory_complete
    set -l words (commandline -opc) (commandline -ct | string unescape)
    type -q $words[1]; or return
    set -l lines ($words[1] __complete words $words[2..-1] 2>/dev/null)
    set -l option (string match -r -- '^--[^=]*=' $words[-1]; or echo '')
    set -l path (string replace -r -- '^--[^=]*=' '' $words[-1])
    switch "$lines[1]$option"
        case xml
            __fish_complete_suffix .xml
        case 'files*' 'xml*'
            printf '%s\n' $option(__fish_complete_path "$path")
        case 'folders*'
            printf '%s\n' $option(__fish_complete_directories "$path")
        case '*'
            printf '%s\n' $lines[2..-1]
    end
end

complete -c vrx-inventory -f -a '(__vrx_inventory_complete)'
)";

constexpr std::array SCRIPTS{ShellScript{"bash", BASH}, ShellScript{"zsh", ZSH}, ShellScript{"fish", FISH}};

}  // namespace

std::vector<std::string> knownShells() {
    std::vector<std::string> names;
    for (const ShellScript& script : SCRIPTS) {
        names.emplace_back(script.shell);
    }
    return names;
}

const char* completionScript(const std::string& shell) {
    return std::ranges::find(SCRIPTS, std::string_view(shell), &ShellScript::shell)->text;
}

}  // namespace vrx::cli
