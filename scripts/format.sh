#!/usr/bin/env bash
# Formats every C++ file; with --check only says which ones would change.
set -u
. "$(dirname "$0")/env.sh"
cd "$QV_ROOT" || exit 1

mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
if [ "${1:-}" = --check ]; then
  clang-format --dry-run -Werror "${files[@]}" 2>/dev/null && exit 0
  for file in "${files[@]}"; do
    clang-format --dry-run -Werror "$file" 2>/dev/null || say "$file"
  done
  die "These files are not formatted; run scripts/format.sh to mend them."
fi
clang-format -i "${files[@]}"
