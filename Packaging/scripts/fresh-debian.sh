#!/usr/bin/env bash
# fresh-debian.sh DIRECTORY [COMMAND...]
#
# Runs a command (default: .ci/run) in a clone of what is committed here, on a Debian 12 with nothing but git added:
# the proof that packages.txt is complete and that nothing depends on this machine. Makes the system in DIRECTORY if
# that is not there yet; for a fresh one delete it first. The clone is made afresh each time.
#
# Needs root, debootstrap and about 3 GB. Packages come from where this machine gets its own. Everything runs in
# namespaces of its own, so that no mount and no process is left behind.
set -euo pipefail
# shellcheck source=Packaging/scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[ $# -gt 0 ] || die "Usage: fresh-debian.sh DIRECTORY [COMMAND...]"
[ "$(id -u)" -eq 0 ] || die "A Debian system can only be made as root."
command -v debootstrap >/dev/null || die "debootstrap is missing: apt-get install debootstrap"
target=$(realpath -m -- "$1")
shift
[ $# -gt 0 ] || set -- .ci/run
suite=bookworm

# Where this machine gets Debian from: lines "URI SUITE".
# shellcheck disable=SC2016 # the names in it are apt's
sources=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE)' 'Created-By: Packages' 'Component: main' |
    grep -E " $suite(-updates|-security)?\$" | sort -u) || die "This machine has no apt source for Debian $suite."

make_system() {
    local mirror
    mirror=$(awk -v suite="$suite" '$2 == suite { print $1; exit }' <<<"$sources")
    say "Making Debian $suite in $target from $mirror ..."
    debootstrap --variant=minbase --include=git,ca-certificates "$suite" "$target.part" "$mirror" \
        >"$target.log" 2>&1 || die "debootstrap failed; see $target.log."
    awk '{ print "deb", $1, $2, "main" }' <<<"$sources" >"$target.part/etc/apt/sources.list"
    # A proxy or a certificate of this network is needed inside as well.
    grep -lE '^[[:space:]]*Acquire::(http|https)::' /etc/apt/apt.conf /etc/apt/apt.conf.d/* 2>/dev/null |
        xargs -r cp -t "$target.part/etc/apt/apt.conf.d/" || true
    cp /etc/ssl/certs/ca-certificates.crt "$target.part/etc/ssl/certs/ca-certificates.crt"
    mv "$target.part" "$target"
}

[ ! -e "$target.part" ] || die "$target.part is left from a run that was cut short; delete it first."
[ -d "$target" ] || make_system
cp -L /etc/resolv.conf /etc/hosts "$target/etc/"

clone="$target/root/corvane"
rm -rf "$clone"
git -c safe.directory='*' clone --quiet --no-hardlinks "$root" "$clone"

variables=(HOME=/root LANG=C.UTF-8 PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin)
for name in http_proxy https_proxy no_proxy CI CMAKE_BUILD_PARALLEL_LEVEL; do
    [ -z "${!name-}" ] || variables+=("$name=${!name}")
done

# The mounts live in a mount namespace and the processes in a process namespace: both end with the command.
# shellcheck disable=SC2016 # expanded by the inner shell
exec unshare --mount --pid --fork --kill-child bash -c '
    set -eu
    target=$1
    shift
    mount --make-rprivate /
    mount -t proc proc "$target/proc"
    mount -t sysfs -o ro sysfs "$target/sys" 2>/dev/null || true
    mount -t tmpfs -o mode=755 tmpfs "$target/dev"
    for node in null zero full random urandom tty; do
        touch "$target/dev/$node"
        mount --bind "/dev/$node" "$target/dev/$node"
    done
    mkdir "$target/dev/pts" "$target/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=666 devpts "$target/dev/pts"
    mount -t tmpfs -o mode=1777 tmpfs "$target/dev/shm"
    ln -s pts/ptmx "$target/dev/ptmx"
    ln -s /proc/self/fd "$target/dev/fd"
    ln -s fd/0 "$target/dev/stdin"
    ln -s fd/1 "$target/dev/stdout"
    ln -s fd/2 "$target/dev/stderr"
    exec chroot "$target" bash -c "cd ~/corvane && exec \"\$@\"" corvane "$@"
' corvane "$target" env -i "${variables[@]}" "$@" </dev/null
