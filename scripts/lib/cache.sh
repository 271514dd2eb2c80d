# The directory for what is kept between builds: Wine prefixes, results of clang-tidy, the fuzzer's corpus. Sourced by
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
