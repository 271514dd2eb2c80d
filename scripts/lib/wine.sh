# Functions for throw-away Wine prefixes. Sourced by bash scripts.
#
# A "prefix directory" contains home/ (the HOME of everything that runs in it) and prefix/ (the WINEPREFIX).
# The template prefix takes seconds and 700 MB, a clone 0.1 s and 10 MB: a clone shares the tree of system DLLs by hard
# links. Nothing else is shared, because Wine rewrites other files in place and would change the template through a link.

. "$(dirname "${BASH_SOURCE[0]}")/cache.sh"

# Increase this when the template is made differently, so that old templates are no longer used.
tandrel_wine_recipe=1

tandrel_wine_directory() {
    local version cache
    version=$(wine --version 2>/dev/null | tr -c 'A-Za-z0-9.\n' '_') || version=
    if [ -z "$version" ]; then
        echo "wine is not installed: run scripts/install-dependencies test" >&2
        return 1
    fi
    cache=$(tandrel_cache_directory) || return 1
    echo "$cache/$version-r$tandrel_wine_recipe-u$(id -u)"
}

# Makes every Wine program started from now on use the prefix directory $1.
tandrel_wine_enter() {
    export HOME="$1/home" WINEPREFIX="$1/prefix" WINEARCH=win64
    export WINEDEBUG="${WINEDEBUG:--all}"
    # Without the last two, shortcuts leak into the desktop of the user and a crash waits for a debugger.
    export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree=;winemenubuilder.exe,winedbg.exe=d}"
    # With the C locale, file names and arguments lose everything except ASCII.
    export LC_ALL=C.UTF-8
    unset DISPLAY WAYLAND_DISPLAY XDG_DATA_HOME XDG_CONFIG_HOME XDG_CACHE_HOME
    # Only run-with-display gives programs a screen.
    if [ -n "${TANDREL_DISPLAY:-}" ]; then export DISPLAY="$TANDREL_DISPLAY"; fi
}

# Ends everything that still runs in the prefix directory $1; afterwards its *.reg files are up to date.
tandrel_wine_stop() {
    ( tandrel_wine_enter "$1"; timeout 20 wineserver -k; timeout 20 wineserver -w ) >/dev/null 2>&1 </dev/null || true
}

tandrel_wine_build_template() {
    local new="$1" link fonts
    mkdir -p "$new/home"
    ( tandrel_wine_enter "$new"; cd "$new/home"; timeout 180 wineboot -i; timeout 60 wineserver -w ) \
        >"$new/log" 2>&1 </dev/null
    # The document folders of a new prefix are links into HOME: deleting through them would hit the target.
    for link in "$new"/prefix/drive_c/users/*/*; do
        if [ -L "$link" ]; then rm "$link"; mkdir "$link"; fi
    done
    fonts=$(dpkg -L fonts-wine 2>/dev/null | grep '/marlett\.ttf$' | head -n 1) || true
    if [ -n "$fonts" ]; then cp "$fonts" "$new/prefix/drive_c/windows/Fonts/"; fi
    if ! [ -s "$new/prefix/system.reg" ] || ! [ -s "$new/prefix/drive_c/windows/system32/kernel32.dll" ]; then
        echo "making the Wine prefix failed:" >&2
        tail -n 20 "$new/log" >&2
        return 1
    fi
}

# Prints the directory of the template; creates it first if necessary. Safe for parallel callers.
tandrel_wine_template() {
    local directory lock new
    directory=$(tandrel_wine_directory) || return 1
    mkdir -p "$directory" || return 1
    if ! [ -d "$directory/template" ]; then
        exec {lock}>"$directory/template.lock"
        flock "$lock"
        if ! [ -d "$directory/template" ]; then
            rm -rf "$directory"/new.*
            new=$(mktemp -d "$directory/new.XXXXXX") || return 1
            tandrel_wine_build_template "$new" {lock}>&- || return 1
            mv "$new" "$directory/template" || return 1
        fi
        exec {lock}>&-
    fi
    echo "$directory/template"
}

# In the prefix $1 Wine places, decorates and activates windows itself. A window manager would do so later and through the
# display, and a window that it takes over is elsewhere for a moment: a click that comes then is lost.
tandrel_wine_manage_windows() {
    printf '\n[Software\\\\Wine\\\\X11 Driver] 0\n"Managed"="N"\n' >>"$1/user.reg"
}

# Fills the prefix directory $2 (existing or not, without home/ and prefix/) with a clone of the template $1.
tandrel_wine_clone() {
    local from="$1/prefix" to="$2/prefix" entry
    mkdir -p "$2/home" "$to/drive_c" || return 1
    cp -a "$from"/*.reg "$from/.update-timestamp" "$from/dosdevices" "$to/" || return 1
    for entry in "$from"/drive_c/*; do
        case $entry in
            */windows) ;;
            *) cp -a "$entry" "$to/drive_c/" || return 1 ;;
        esac
    done
    if [ "${TANDREL_WINE_OWN_WINDOWS:-0}" = 1 ]; then tandrel_wine_manage_windows "$to" || return 1; fi
    if ! cp -al "$from/drive_c/windows" "$to/drive_c/windows" 2>/dev/null; then
        # A different file system from the cache's, where hard links are impossible.
        rm -rf "$to/drive_c/windows"
        cp -a --reflink=auto "$from/drive_c/windows" "$to/drive_c/windows" || return 1
        return 0
    fi
    for entry in "$to"/drive_c/windows/*.ini; do
        cp -p --remove-destination "$from/drive_c/windows/${entry##*/}" "$entry" || return 1
    done
}
