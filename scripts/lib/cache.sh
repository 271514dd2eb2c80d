# Where things live that outlast a build: Wine prefixes, results of clang-tidy, what the fuzzer has learnt. Sourced by
# bash scripts.

tandrel_cache_directory() {
    if [ -n "${TANDREL_CACHE:-}" ]; then
        echo "$TANDREL_CACHE"
    elif [ -n "${XDG_CACHE_HOME:-}" ]; then
        echo "$XDG_CACHE_HOME/tandrel"
    else
        echo "${HOME:-/tmp/tandrel-cache-$(id -u)}/.cache/tandrel"
    fi
}
