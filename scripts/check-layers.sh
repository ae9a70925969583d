#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Fails when a source file includes a header from a folder whose library sits above its own.
# A folder's widgets ("forms") sit above its logic; logic never includes widgets, and the command-line
# tool links no widgets at all.
set -euo pipefail
cd "$(dirname "$0")/.."

# The layers, lowest first: this line is the one place that says which folder may use which.
LAYERS=(base store session records genetics printing husbandry breeding calendar backup exchange shell app cli)
WIDGET_FOLDERS=" shell app "

rank() { # rank of a folder such as "records" or "records/forms"; empty when the folder is unknown
    local top=${1%%/*} i
    for i in "${!LAYERS[@]}"; do
        if [[ ${LAYERS[$i]} == "$top" ]]; then echo "$i"; return; fi
    done
}
has_widgets() { [[ $1 == */forms || $WIDGET_FOLDERS == *" $1 "* ]]; }

status=0
while IFS= read -r file; do
    from=$(dirname "${file#src/}")
    from_rank=$(rank "$from")
    if [[ -z $from_rank ]]; then
        echo "$file: the folder $from has no place in the layer list of scripts/check-layers.sh"
        status=1
        continue
    fi
    while IFS=: read -r line header; do
        to=$(dirname "$header")
        [[ $to == "$from" ]] && continue
        to_rank=$(rank "$to")
        [[ -z $to_rank ]] && continue # a header of Qt or the system
        if ((to_rank > from_rank)) || { has_widgets "$to" && ! has_widgets "$from"; } ||
           { ((to_rank == from_rank)) && [[ $to == */forms && $from != */forms ]]; }; then
            echo "$file:$line: includes $header, from a layer above $from"
            status=1
        fi
    done < <(grep -nE '^#include "[^"]+/[^"]+"' "$file" | sed -E 's/^([0-9]+):#include "([^"]+)".*/\1:\2/')
done < <(find src -name '*.cpp' -o -name '*.h' | sort)

if ((status == 0)); then echo "check-layers: every include points at its own layer or one below"; fi
exit $status
