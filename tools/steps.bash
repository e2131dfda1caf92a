# Sourced by the scripts that build and check: runs steps quietly, one line each with its seconds.
# The output of a step goes to build/log/<step>.log; when it fails, the end of it is shown.

mkdir -p build/log build/passed

# What one checkout compiled, the next one finds, wherever it stands.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1

# step <name> <command>...
step() {
    local name=$1 log=build/log/${1//[ \/]/-}.log start=$SECONDS
    shift
    printf '%-28s' "$name"
    if ! "$@" >"$log" 2>&1 </dev/null; then
        printf 'failed after %d s: %s\n' $((SECONDS - start)) "$*"
        tail -n 60 "$log"
        printf '(all of it: %s)\n' "$log"
        exit 1
    fi
    printf '%5d s\n' $((SECONDS - start))
}

# step_if_changed <name> <path>... -- <command>...
# As step, but skipped when it passed before with the same bytes under these paths.
step_if_changed() {
    local name=$1 passed=build/passed/${1//[ \/]/-} paths=() inputs
    shift
    while [[ $1 != -- ]]; do
        paths+=("$1")
        shift
    done
    shift
    inputs=$(fingerprint "${paths[@]}" <<<"$*")
    if [[ -f $passed && $(<"$passed") == "$inputs" ]]; then
        printf '%-28s  unchanged\n' "$name"
        return
    fi
    step "$name" "$@"
    printf '%s\n' "$inputs" >"$passed"
}

# fingerprint <path>...: one hash over names and bytes of the project's files there, its packages'
# versions and the standard input.
fingerprint() {
    {
        cat
        dpkg-query -W -f='${Package} ${Version}\n' g++ clang-16 libgdal-dev libcairo2-dev 2>/dev/null
        git ls-files -z -co --exclude-standard -- "$@" | sort -zu | xargs -0r sha256sum 2>/dev/null
    } | sha256sum
}
