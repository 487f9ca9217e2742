#!/bin/sh
# wine32.sh FOLDER: puts a 32-bit Wine, FOLDER/wine, into a folder of its own, out of Debian's packages for i386. As a
# second architecture beside the machine's own it would need both to have the same versions of everything, and apt's
# consent; this needs no root, only the package libc6-i386.
set -eu
mkdir -p "$1"
cd "$1"
folder=$PWD
if [ -x wine ]; then
  exit 0
fi

rm -rf apt root
mkdir -p apt/lists/partial apt/cache/archives/partial root
: >apt/status
apt() {
  apt-get -q -o Dir::State="$folder/apt" -o Dir::State::status="$folder/apt/status" -o Dir::Cache="$folder/apt/cache" \
    -o APT::Architecture=i386 -o APT::Architectures=i386 "$@"
}
# One archive that does not answer is no reason to stop: what is missing shows when the packages are fetched.
apt update || true
apt install -y --no-install-recommends --download-only wine32

# The C library is that of libc6-i386, which stands where programs look for it.
for package in apt/cache/archives/*.deb; do
  case $package in
    */libc6_*) ;;
    *) dpkg-deb --fsys-tarfile "$package" | tar x -C root --exclude './usr/share/doc' --exclude '*/x86_64-windows/*' ;;
  esac
done
rm -rf apt

# What the installation of the package would do: Wine takes this library as one of its own only when it is marked so.
libraries=root/usr/lib/i386-linux-gnu
zlib=root/usr/i686-w64-mingw32/lib/zlib1.dll
{ head -c 64 $zlib && printf 'Wine builtin DLL' && head -c 16 /dev/zero && tail -c +97 $zlib; } \
  >$libraries/wine/i386-windows/zlib1.dll

cat >wine.new <<END
#!/bin/sh
export LD_LIBRARY_PATH="$folder/$libraries:$folder/root/lib/i386-linux-gnu" WINEARCH=win32
export WINELOADER="$folder/root/usr/lib/wine/wine" WINESERVER="$folder/root/usr/lib/wine/wineserver32"
exec "\$WINELOADER" "\$@"
END
chmod +x wine.new
mv wine.new wine
