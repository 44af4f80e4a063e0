#!/usr/bin/env bash
# ensure-packages.sh SECTION...
#
# Installs the Debian packages of the named sections of packages.txt that are missing, and only these. When nothing is
# missing it costs a few milliseconds and needs neither root nor a network.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
list="$root/packages.txt"

die() {
    printf '%s\n' "$@" >&2
    exit 1
}

# packages_of SECTION...: the names in these sections, one a line.
packages_of() {
    awk -v wanted=" $* " '
        { sub(/#.*/, ""); gsub(/[ \t\r]/, "") }
        /^\[.*\]$/ { name = substr($0, 2, length($0) - 2); inside = index(wanted, " " name " "); seen[name] = 1; next }
        inside && $0 != "" && !printed[$0]++ { print }
        END {
            count = split(wanted, names, " ")
            for (i = 1; i <= count; i++) if (!(names[i] in seen)) {
                print "packages.txt has no section [" names[i] "]" > "/dev/stderr"
                exit 1
            }
        }' "$list"
}

[ $# -gt 0 ] || die "Usage: ensure-packages.sh SECTION..."
names=$(packages_of "$@")
mapfile -t packages <<<"$names"

command -v dpkg-query >/dev/null || die \
    "Corvane installs what it needs with Debian's package manager, and this system has none (no dpkg-query)." \
    "It is built and tested on Debian 12 (bookworm). These are the packages it needs there:" "  ${packages[*]}"

# dpkg-query fails for names it does not know; what counts is what it prints.
installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${packages[@]}" 2>/dev/null |
    sed -n 's/^installed //p' | sort -u || true)
mapfile -t missing < <(comm -23 <(printf '%s\n' "${packages[@]}" | sort -u) <(printf '%s\n' "$installed"))
[ "${#missing[@]}" -gt 0 ] || exit 0

apt_get=(apt-get)
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || die \
        "These packages are missing, and installing them needs root (there is no sudo here either):" \
        "  ${missing[*]}" "Ask whoever looks after this machine to run:" \
        "  apt-get update && apt-get install --no-install-recommends ${missing[*]}"
    apt_get=(sudo apt-get)
fi

echo "Installing ${#missing[@]} missing packages: ${missing[*]}" >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT

# Quiet while it goes well. sudo asks for its password on the terminal, not through here.
quietly() {
    if ! "$@" >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        return 1
    fi
}

[ "${apt_get[0]}" != sudo ] || sudo -v
options=(-o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)
# Without the network the lists and packages at hand may still do: apt-get install has the last word.
quietly "${apt_get[@]}" "${options[@]}" update ||
    echo "Warning: apt-get update failed; going on with the package lists at hand." >&2
install=("${apt_get[@]}")
[ "${apt_get[0]}" = sudo ] && install=(sudo env DEBIAN_FRONTEND=noninteractive apt-get)
export DEBIAN_FRONTEND=noninteractive
quietly "${install[@]}" "${options[@]}" install -y --no-install-recommends "${missing[@]}" || die \
    "" "Could not install: ${missing[*]}" "What apt-get said stands above. To try again by hand:" \
    "  ${apt_get[*]} update && ${apt_get[*]} install --no-install-recommends ${missing[*]}"
