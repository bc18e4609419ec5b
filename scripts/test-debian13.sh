#!/usr/bin/env bash
# Builds Quellton in a Debian 13 (trixie) root and runs its tests there: `make test-debian13`.
# The root is made once with debootstrap and kept under ~/.cache/quellton/debian13 (DEBIAN13_ROOT
# elsewhere); every run installs what scripts/packages.txt lists into it, builds this checkout
# afresh and runs ctest (CTEST_ARGS narrows it, e.g. CTEST_ARGS="-R WaylandProgram").
# Needs root. Every mount lives in a mount namespace of its own, so nothing stays mounted on the
# host, whatever way a run ends. Prints how long it took and how much it downloaded.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
root=${DEBIAN13_ROOT:-$HOME/.cache/quellton/debian13}
mirror=${DEBIAN_MIRROR:-http://deb.debian.org/debian}
security=${DEBIAN_SECURITY_MIRROR:-http://deb.debian.org/debian-security}

[[ $(id -u) -eq 0 ]] || { echo "test-debian13: als root starten (debootstrap und mount brauchen es)" >&2; exit 1; }
command -v debootstrap >/dev/null || apt-get install -y -qq --no-install-recommends debootstrap

started=$(date +%s)
received() { awk 'NR > 2 && $1 != "lo:" { sum += $2 } END { print sum }' /proc/net/dev; }
before=$(received)

if [[ ! -e "$root/.quellton-base" ]]; then
  rm -rf "$root"
  mkdir -p "$root"
  debootstrap --variant=minbase trixie "$root" "$mirror"
  cat > "$root/etc/apt/sources.list.d/debian.sources" <<EOF
Types: deb
URIs: $mirror
Suites: trixie trixie-updates
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg

Types: deb
URIs: $security
Suites: trixie-security
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
EOF
  rm -f "$root/etc/apt/sources.list"
  # Nothing starts services inside the root, and only what a package depends on is installed.
  printf '#!/bin/sh\nexit 101\n' > "$root/usr/sbin/policy-rc.d"
  chmod +x "$root/usr/sbin/policy-rc.d"
  printf 'APT::Install-Recommends "false";\n' > "$root/etc/apt/apt.conf.d/90quellton"
  touch "$root/.quellton-base"
fi

# The checkout as it is, without build folders; the root's build folder is its own.
# A fresh copy each run, stamped now: files deleted here must go there too, and a file whose kept
# stamp predates the root's last build would otherwise not be rebuilt (ccache keeps this cheap).
rm -rf "$root/src/quellton"
mkdir -p "$root/src/quellton"
tar -C "$here" --exclude=./build --exclude=./build-asan --exclude=./.git -cf - . | tar -C "$root/src/quellton" -xmf -

# One command inside the root, with /proc, /sys, /dev and fresh /tmp and /dev/shm mounted
# in a private mount namespace (the namespace's end takes the mounts with it).
inside() {
  local network=$1; shift
  unshare --mount --pid --fork --kill-child --mount-proc="$root/proc" $network bash -c '
    set -e
    root=$1; shift
    mount --make-rprivate /
    mount --rbind /sys "$root/sys"
    mount --rbind /dev "$root/dev"
    mount -t tmpfs tmpfs "$root/dev/shm"
    mount -t tmpfs tmpfs "$root/tmp"
    exec chroot "$root" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
      DEBIAN_FRONTEND=noninteractive "$@"
  ' inside "$root" "$@"
}

echo "== Debian 13: Pakete"
inside "" bash -c 'apt-get update -qq && apt-get install -y -qq --no-install-recommends ca-certificates make >/dev/null &&
  /src/quellton/scripts/install-deps.sh'
downloaded=$(( ($(received) - before) / 1024 / 1024 ))

echo "== Debian 13: Bau"
inside "" bash -c 'cmake -S /src/quellton -B /root/build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null &&
  cmake --build /root/build -j "$(nproc)"'

echo "== Debian 13: Tests"
status=0
# No network for the tests: the suite talks only to its own private servers.
inside "--net --ipc" bash -c "ctest --test-dir /root/build --output-on-failure -j \"\$(nproc)\" --timeout 900 ${CTEST_ARGS:-}" ||
  status=$?

minutes=$(( ($(date +%s) - started + 59) / 60 ))
echo "test-debian13: ${minutes} min, ${downloaded} MB geladen, Wurzel in $root"
exit $status
