# The directory for what is kept between builds: Wine prefixes, results of clang-tidy, the fuzzer's corpus, the window's
# libraries. Sourced by bash scripts.

tandrel_cache_directory() {
    if [ -n "${TANDREL_CACHE:-}" ]; then
        echo "$TANDREL_CACHE"
    elif [ -n "${XDG_CACHE_HOME:-}" ]; then
        echo "$XDG_CACHE_HOME/tandrel"
    elif [ -n "${HOME:-}" ]; then
        echo "$HOME/.cache/tandrel"
    else
        tandrel_private_directory "/tmp/tandrel-cache-$(id -u)"
    fi
}

# Prints the directory $1, which is made if necessary. Everybody can foresee its name, so it has to be this user's own, and
# nobody else's to write to.
tandrel_private_directory() {
    mkdir -m 700 "$1" 2>/dev/null || true
    if [ -L "$1" ] || ! [ -O "$1" ] || [ "$(stat -c %a "$1")" != 700 ]; then
        echo "$1 belongs to somebody else or is open to others: set TANDREL_CACHE to a directory of your own" >&2
        return 1
    fi
    echo "$1"
}

# tandrel_cached NAME KEY COMMAND...
#
# Prints <cache>/NAME-KEY, the directory with what COMMAND makes. If it is missing, COMMAND is run with a new directory
# as its last argument; that gets the final name only when COMMAND has succeeded, so a directory of this name is always
# whole. Callers may be parallel: one makes it, the others wait. What was made under other keys and hasn't been asked for
# in a week is removed; until then, other checkouts may need it. COMMAND's output goes to standard error.
tandrel_cached() {
    local entry lock new failed=0
    entry="$(tandrel_cache_directory)/$1" || return 1
    mkdir -p "$(dirname "$entry")" || return 1
    if ! [ -d "$entry-$2" ]; then
        exec {lock}>"$entry.lock"
        flock "$lock"
        if ! [ -d "$entry-$2" ]; then
            rm -rf "$entry".new.*  # of runs that were killed
            new=$(mktemp -d "$entry.new.XXXXXX") || return 1
            "${@:3}" "$new" {lock}>&- >&2 || failed=1
            if [ "$failed" -ne 0 ] || ! mv -T "$new" "$entry-$2"; then
                rm -rf "$new"
                return 1
            fi
            find "$(dirname "$entry")" -maxdepth 1 -type d -name "${entry##*/}-*" ! -path "$entry-$2" -mtime +6 \
                -exec rm -rf {} +
        fi
        exec {lock}>&-
    fi
    # Fails in a cache that belongs to somebody else, who will then see to its age.
    touch "$entry-$2" 2>/dev/null || true
    echo "$entry-$2"
}
