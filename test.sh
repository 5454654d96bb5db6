#!/bin/bash
# Builds Tessarine and runs every test on a private display. With --all the slow desktop tests run
# too, and the unit tests once more under the sanitizers. With --again what was red is run once more,
# alone: it fails only if it is red again, and what was red at first is told at the end.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. scripts/packages.sh

usage() {
    printf 'usage: %s [--all | --again]\n' "$0" >&2
    exit 2
}

runs_all=false
runs_again=false
case "${1:-}" in
    '') ;;
    --all) runs_all=true ;;
    --again) runs_again=true ;;
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

# run_ctest PRESET CTEST-OPTIONS...: runs tests away from this session.
run_ctest() {
    local preset=$1
    shift
    /usr/bin/python3 -B tests/desktop/desktop.py -- \
        ctest --test-dir "build/$preset" --output-on-failure --no-tests=error "$@"
}

# run_tests PRESET CTEST-OPTIONS...: builds a preset, and runs its tests.
run_tests() {
    local preset=$1 failed="build/$1/Testing/Temporary/LastTestsFailed.log" red
    shift
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    if run_ctest "$preset" "$@"; then
        return
    elif ! $runs_again; then
        return 1
    fi
    red=$(cat "$failed")
    run_ctest "$preset" --rerun-failed || return 1
    printf 'Red at first, and green when run again:\n%s\n' "$red"
}

if $runs_all; then
    run_tests release
    run_tests asan --label-regex '^(unit|x11)$'
    run_tests tsan --label-regex '^(unit|x11)$'
else
    run_tests release --label-exclude '^slow$'
fi
