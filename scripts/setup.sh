#!/usr/bin/env bash
# Installs what the build and the tests need on Debian 12 and is missing on this machine. Says what it
# installs. Called by ./run and ./test; installs nothing when everything is there. With "bench", the programs
# that the benchmarks are compared with too.
set -euo pipefail

packages=(g++ clang cmake ninja-build ccache python3 python3-ezdxf libgtest-dev libbenchmark-dev
          libcli11-dev libedit-dev libcairo2-dev libfontconfig-dev fonts-dejavu-core clang-format clang-tidy)
[ "${1:-}" = bench ] && packages+=(guile-3.0 chicken-bin libdime-dev libdxflib-dev)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: neither root nor sudo; install: ${missing[*]}" >&2; exit 1; }
    as_root=(sudo)
fi
echo "setup: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq >&2
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
