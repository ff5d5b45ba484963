#!/bin/sh
# Installs the Debian packages in a clean system of their own, builds against them, and takes them away again.
#   check_debs.sh FOLDER_WITH_PACKAGES VERSION WORK_FOLDER
# Needs root, debootstrap and a mirror (MIRROR, by default the first one that apt uses here).
set -eu
packages=$1 version=$2 root=$3/root
source=$(cd "$(dirname "$0")/../.." && pwd)
mirror=${MIRROR:-$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | head -n 1)}

[ "$(id -u)" = 0 ] || { echo "check_debs: only root can make a chroot" >&2; exit 1; }

rm -rf "$root" && mkdir -p "$root"
debootstrap --variant=minbase --include=ca-certificates bookworm "$root" "$mirror" > "$3/debootstrap.log" ||
  { tail "$3/debootstrap.log" >&2; exit 1; }
mkdir "$root/debs" "$root/trial"
cp "$packages"/*.deb "$root/debs"
cp -r "$source/tests/consumer" "$source/examples" "$source/tests/data" "$root/trial"
cp /etc/resolv.conf "$root/etc/" 2> /dev/null || true
for file in /etc/apt/apt.conf.d/*proxy*; do [ ! -e "$file" ] || cp "$file" "$root/etc/apt/apt.conf.d/"; done
cat > "$root/trial/check" <<'END'
set -eux
export DEBIAN_FRONTEND=noninteractive LC_ALL=C
apt-get update -q
apt-get install -q -y --no-install-recommends /debs/*.deb > /trial/install.log
dpkg --verify libportraitcut0 libportraitcut-dev
ldconfig -p | grep -q 'libportraitcut.so.0 '
apt-get install -q -y --no-install-recommends g++ cmake ninja-build pkg-config >> /trial/install.log
for project in consumer examples; do
  cmake -G Ninja -S /trial/$project -B /trial/build-$project > /dev/null
  cmake --build /trial/build-$project > /dev/null
done
/trial/build-consumer/consumer "$1"
[ "$(pkg-config --modversion portraitcut)" = "$1" ]
cc -std=c99 -Wall -Werror /trial/consumer/consumer.c -o /trial/consumer_pc $(pkg-config --cflags --libs portraitcut)
/trial/consumer_pc "$1"
/trial/build-examples/portrait /trial/data/average_faces.png /trial/portrait.png 240 320
[ -s /trial/portrait.png ]
if [ -e /debs/portraitcut_* ]; then portraitcut cut /trial/data/average_face_1.jpg -o /trial/by_program.jpg; fi
apt-get purge -q -y '*portraitcut*' >> /trial/install.log
! ldconfig -p | grep portraitcut
[ -z "$(find /usr /etc /var/lib /bin /lib -name '*portraitcut*')" ]
END
# Nothing of this system's but its proxies: a compiler launcher told here, for one, is not there.
env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root ${http_proxy:+http_proxy="$http_proxy"} \
  ${https_proxy:+https_proxy="$https_proxy"} chroot "$root" /bin/sh /trial/check "$version"
rm -rf "$root"
echo "check_debs: installed, used and removed"
