#!/bin/bash
# Builds Tessarine and starts it on this desktop. Without a desktop, or with --tour, the program is
# shown at work on a desktop of its own, and pictures are left under build/tour/.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"
. scripts/packages.sh

usage() {
    printf 'usage: %s [--tour]\n' "$0" >&2
    exit 2
}

case "${1:-}" in
    '') wants_tour=false ;;
    --tour) wants_tour=true ;;
    *) usage ;;
esac
if [ $# -gt 1 ]; then
    usage
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    wants_tour=true
fi

packages=("${build_packages[@]}" "${run_packages[@]}")
if $wants_tour; then
    packages+=("${tour_packages[@]}")
fi
install_missing "${packages[@]}"

cmake --preset release
cmake --build --preset release --target tessarine

if $wants_tour; then
    exec /usr/bin/python3 -B tests/desktop/tour.py --program build/release/bin/tessarine \
        --pictures build/tour
fi
exec build/release/bin/tessarine
