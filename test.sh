#!/bin/bash
# Builds Tessarine and runs every test on a private display. With --all the slow desktop tests run
# too, and the unit tests once more under the sanitizers.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. scripts/packages.sh

usage() {
    printf 'usage: %s [--all]\n' "$0" >&2
    exit 2
}

case "${1:-}" in
    '') runs_all=false ;;
    --all) runs_all=true ;;
    *) usage ;;
esac
if [ $# -gt 1 ]; then
    usage
fi

packages=("${build_packages[@]}" "${run_packages[@]}" "${tour_packages[@]}" "${test_packages[@]}")
if $runs_all; then
    packages+=("${slow_test_packages[@]}")
fi
install_missing "${packages[@]}"

# run_tests PRESET CTEST-OPTIONS...: builds a preset, and runs its tests away from this session.
run_tests() {
    local preset=$1
    shift
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    /usr/bin/python3 -B tests/desktop/desktop.py -- \
        ctest --test-dir "build/$preset" --output-on-failure --no-tests=error "$@"
}

if $runs_all; then
    run_tests release
    run_tests asan --label-regex '^(unit|x11)$'
    run_tests tsan --label-regex '^(unit|x11)$'
else
    run_tests release --label-exclude '^slow$'
fi
