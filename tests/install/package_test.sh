#!/usr/bin/env bash
# Makes the Debian package, installs it into a fresh root, runs it there and removes it without a trace. The root holds
# nothing but dpkg's database and the packages of this machine that the package depends on, copied.
#   package_test.sh BUILD_FOLDER SOURCE_FOLDER
set -euo pipefail
build=$1 source=$2

skip() { echo "skipped: $1"; exit 77; }
fail() { echo "$1" >&2; exit 1; }
[ "$(id -u)" -eq 0 ] || skip "only root may change into another root"
for tool in dpkg-deb dpkg-shlibdeps chroot cpack; do
  command -v "$tool" >/dev/null || skip "$tool is not here"
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root

make_package() {
  cpack --config "$build/CPackConfig.cmake" -B "$work/package" >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log"; exit 1; }
  package=$(echo "$work"/package/*.deb)
}

# The names of the given packages and of all that they depend on; of alternatives, those that are installed here.
with_dependencies() {
  local waiting=("$@") name
  declare -A seen=()
  while [ ${#waiting[@]} -gt 0 ]; do
    name=${waiting[0]} waiting=("${waiting[@]:1}")
    [ -z "${seen[$name]-}" ] && dpkg-query -W "$name" >/dev/null 2>&1 || continue
    seen[$name]=yes
    mapfile -t -O "${#waiting[@]}" waiting < <(dpkg-query -W -f '${Pre-Depends},${Depends}\n' "$name" |
      tr ',|' '\n\n' | sed 's/(.*//; s/:any//; s/ //g; /^$/d')
  done
  printf '%s\n' "${!seen[@]}"
}

# Copies an installed package: its files and its entries in dpkg's database.
copy_package() {
  local database=var/lib/dpkg
  dpkg-query -L "$1" | sed -E 's,^/(bin|sbin|lib|lib64)/,/usr/\1/,' | while read -r path; do
    case $path in /usr/share/doc/*|/usr/share/man/*|/usr/share/locale/*) continue ;; esac
    if [ -L "$path" ] || [ -f "$path" ]; then printf '%s\0' "${path#/}"; fi
  done | tar -C / -c --null --no-recursion -T - | tar -C "$root" -x
  dpkg-query -s "$1" >>"$root/$database/status"
  echo >>"$root/$database/status"
  cp -a /$database/info/"$1".* /$database/info/"$1":* "$root/$database/info/" 2>/dev/null || true
}

make_root() {
  mkdir -p "$root"/{etc,dev,tmp,usr/{bin,sbin,lib,lib64},var/lib/dpkg/{info,updates,triggers}}
  for folder in bin sbin lib lib64; do ln -s "usr/$folder" "$root/$folder"; done
  mknod -m 666 "$root/dev/null" c 1 3 2>/dev/null || : >"$root/dev/null"
  : >"$root/var/lib/dpkg/status"
  local depends name
  depends=$(dpkg-deb -f "$package" Depends | tr ',' '\n' | sed 's/(.*//; s/ //g')
  # shellcheck disable=SC2086
  for name in $(with_dependencies $depends dash libc-bin); do copy_package "$name"; done
  cp -a /var/lib/dpkg/info/format "$root/var/lib/dpkg/info/"
  # Who is interested in the trigger for ldconfig, as on any system.
  cp -a /var/lib/dpkg/triggers/{File,ldconfig} "$root/var/lib/dpkg/triggers/" 2>/dev/null || true
  ldconfig -r "$root"
}

inside() { env -i HOME=/home/user PATH=/usr/bin:/usr/sbin chroot "$root" "$@"; }
in_package() { dpkg --force-unsafe-io --root="$root" --log="$work/dpkg.log" "$@" >"$work/dpkg.out" 2>&1 || { cat "$work/dpkg.out"; exit 1; }; }

# Every file with its form, rights and owner, and the content where that is a file; not dpkg's own notes, nor the cache
# of the loader, which is written anew.
snapshot() {
  (cd "$root" && find . \( -path ./var/lib/dpkg -o -path ./var/cache/ldconfig \) -prune -o -printf '%p %y %m %u:%g %l\n' |
    sort
   find . -path ./var/lib/dpkg -prune -o -type f ! -path './var/cache/ldconfig/*' ! -path ./etc/ld.so.cache -print0 |
    sort -z | xargs -0 sha256sum)
}

check_files() {
  local opened=$work/opened wrong
  dpkg-deb -x "$package" "$opened"
  wrong=$(dpkg-deb -c "$package" | awk '$2 != "root/root" || ($1 !~ /^l/ && $1 ~ /^.....w|^........w/)')
  [ -z "$wrong" ] || fail "wrong owner or rights: $wrong"
  for path in usr/bin/qtrace usr/lib/libqtrace.so usr/lib/libqtrace.a usr/include/qtrace/qtrace.h \
      usr/share/man/man1/qtrace.1.gz usr/share/bash-completion/completions/qtrace usr/share/doc/qtrace/copyright; do
    [ -e "$opened/$path" ] || fail "not in the package: $path"
  done
  if [ -e "$source/packaging/qtrace-record.service.in" ]; then
    grep -q '^ExecStart=/usr/bin/qtrace record' "$opened"/usr/lib/systemd/system/qtrace-record.service ||
      fail "the service is not in the package, or does not call the program"
  fi
  wrong=$(grep -rlaF -e "$build" -e "$source" "$opened" || true)
  [ -z "$wrong" ] || fail "names folders of the build: $wrong"
  wrong=$(readelf -S "$opened/usr/bin/qtrace" "$opened"/usr/lib/libqtrace.so | grep -F -e .debug_info -e .symtab || true)
  [ -z "$wrong" ] || fail "not stripped: $wrong"
  wrong=$(readelf -d "$opened/usr/bin/qtrace" | grep -E 'RPATH|RUNPATH' || true)
  [ -z "$wrong" ] || fail "looks for the library in a place of its own: $wrong"
}

run_inside() {
  cp "$source/samples/drive.nmea" "$root/tmp"
  [ "$(inside qtrace --version)" = "qtrace $(dpkg-deb -f "$package" Version)" ] || fail "another version runs"
  inside ldconfig -p >"$work/cache"
  grep -q libqtrace.so.0 "$work/cache" || fail "the loader was not told of the library"
  inside qtrace record --device /tmp/device /tmp/drive.nmea >"$work/record" || fail "recording failed"
  grep -q 'points    278' "$work/record" || fail "another number of points: $(cat "$work/record")"
  inside qtrace list --device /tmp/device | grep -q 'AutoSaveTrk-' || fail "the track is not in the library"
  rm -r "$root"/tmp/*
}

make_package
check_files
make_root
snapshot >"$work/before"
in_package --install "$package"
run_inside
snapshot >"$work/installed"
! cmp -s "$work/before" "$work/installed" || fail "nothing was installed"
in_package --purge qtrace
snapshot >"$work/after"
diff "$work/before" "$work/after" || fail "something is left behind"
! ldconfig -r "$root" -p 2>/dev/null | grep libqtrace || fail "the loader still knows the library"
! grep -q qtrace "$root/var/lib/dpkg/status" || fail "dpkg still knows the package"
