# shellcheck shell=bash
# Sourced by the scripts: makes sure that what packages.txt beside it names is there.

case ${BASH_SOURCE[0]} in
    */*) packages_file=${BASH_SOURCE[0]%/*}/packages.txt ;;
    *) packages_file=packages.txt ;;
esac

# packages_for PURPOSE...: the entries of these purposes, each once.
packages_for() {
    local purpose line
    local -a entries
    for purpose in "$@"; do
        while IFS= read -r line; do
            [[ $line == "$purpose: "* ]] || continue
            read -ra entries <<<"${line#"$purpose: "}"
            printf '%s\n' "${entries[@]}"
        done <"$packages_file"
    done | LC_ALL=C sort -u
}

# need_packages PURPOSE...: installs the missing Debian packages of these purposes, through sudo
# unless root. On a system without apt it names the libraries that are missing and stops.
need_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        need_libraries "$@"
        return
    fi
    local package missing=""
    for package in $(packages_for "$@"); do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=" $package"
    done
    [ -n "$missing" ] || return 0
    echo "Installing:$missing"
    local as_root=""
    [ "$(id -u)" = 0 ] || as_root=sudo
    $as_root apt-get update -q
    # shellcheck disable=SC2086
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing
}

# need_libraries PURPOSE...: for other distributions, by the names that pkg-config and PATH know.
need_libraries() {
    local name missing=""
    for name in $(packages_for "${@/%/-modules}"); do
        pkg-config --exists "$name" 2>/dev/null || missing+=" $name"
    done
    for name in $(packages_for "${@/%/-programs}"); do
        command -v "$name" >/dev/null || missing+=" $name"
    done
    [ -n "$missing" ] || return 0
    echo "Missing on this system; install and run again:$missing" >&2
    exit 1
}
