# Sourced by the browser tests that check runs rather than pages. Needs
# $work (a scratch folder) and sets failed=1 on a mismatch.
# expect CODE TEXT WHAT COMMAND...: COMMAND must end with exit code CODE and
# print a line matching TEXT (grep pattern); WHAT says what is checked.
expect() {
  local code=$1 text=$2 what=$3
  shift 3
  "$@" >"$work/log" 2>&1
  local got=$?
  if [ "$got" -ne "$code" ] || ! grep -q -- "$text" "$work/log"; then
    cat "$work/log"
    echo "FAILED: $what: exit code $got (expected $code), output must contain \"$text\""
    failed=1
  else
    echo "ok: $what (exit code $got)"
  fi
}
