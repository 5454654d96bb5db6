# The distribution's packages that Tessarine needs, and their installation. To be sourced.

# A compiler, the build tools and the headers.
build_packages=(
    g++ cmake ninja-build ccache mold pkg-config
    qt6-base-dev qt6-base-private-dev qt6-svg-dev
    libxcb1-dev libxcb-xfixes0-dev libxcb-xtest0-dev libxcb-keysyms1-dev libxcb-ewmh-dev
    libxcb-icccm4-dev libxcb-xkb-dev libxcb-xinput-dev libxcb-sync-dev libxkbcommon-dev
    libxkbcommon-x11-dev
    libsm-dev libdbus-1-dev libssl-dev libsqlite3-dev nlohmann-json3-dev
)

# Plug-ins that the running program loads, what opens folders where no file manager is on the bus, and
# a font for desktops that have none.
run_packages=(
    libqt6svg6 qt6-image-formats-plugins xdg-utils fonts-dejavu-core
)

# A headless desktop, and the programs that the tour copies from and pastes into.
tour_packages=(
    python3 python3-xlib xvfb x11-utils x11-xkb-utils xauth dbus
    openbox picom xdotool xclip mousepad pcmanfm imagemagick
)

# More programs that the desktop tests drive, and the fonts of the pictures that they leave.
test_packages=(
    featherpad xterm xfce4-terminal chromium thunar lximage-qt keepassxc tint2 dunst
    xfwm4 metacity mutter kwin-x11
    libgtk-3-bin desktop-file-utils python3-gi gir1.2-gtk-3.0 mount e2fsprogs
    fcitx5 fcitx5-pinyin fcitx5-frontend-qt5 fcitx5-frontend-qt6
    at-spi2-core python3-pyatspi gir1.2-atspi-2.0
    trayer xfce4-panel xfconf lxqt-panel libglib2.0-bin x11-xserver-utils
    fonts-inter fonts-noto-cjk fonts-noto-color-emoji
)

# What only the slow ones among them drive.
slow_test_packages=(
    libreoffice-writer libreoffice-gtk3 xfce4-session
)

# Prints those of the given packages that are not installed.
missing_packages() {
    local package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            printf '%s\n' "$package"
        fi
    done
}

is_debian_12() {
    [ -r /etc/os-release ] && (
        . /etc/os-release
        [ "${ID:-}" = debian ] && [ "${VERSION_ID:-}" = 12 ]
    )
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        printf 'error: root is needed for: %s\n' "$*" >&2
        return 1
    fi
}

# Installs those of the given packages that are missing; asks apt nothing if none is.
install_missing() {
    if ! command -v dpkg-query >/dev/null; then
        refuse_to_install "$@"
    fi
    local missing
    mapfile -t missing < <(missing_packages "$@")
    if [ "${#missing[@]}" -eq 0 ]; then
        return 0
    fi
    if ! is_debian_12; then
        refuse_to_install "${missing[@]}"
    fi
    printf 'Installing %d packages: %s\n' "${#missing[@]}" "${missing[*]}"
    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -y -o DPkg::Lock::Timeout=600)
    as_root "${apt[@]}" update
    as_root "${apt[@]}" install --no-install-recommends "${missing[@]}"
}

refuse_to_install() {
    printf 'error: this is not Debian 12, so nothing is installed here. These packages of Debian,\n' >&2
    printf 'or what your system has in their place, are needed:\n' >&2
    printf '    %s\n' "$@" >&2
    exit 1
}
