# What the end-to-end tests have used of the program, from the records of one run or several: lines of
# "known", kind, name and "used", kind, name, test, parted by TABs. Prints each thing with a test that uses
# it, those without one first, and a last line such as "commands 54 of 54, keys 60 of 60". Fails when a
# thing is used by no test, or nothing is known.
BEGIN { FS = "\t" }
{ sub(/\r$/, ""); thing = $2 "\t" $3 }
$1 == "known" && !(thing in kinds) { kinds[thing] = $2; known[$2]++ }
$1 == "used" && !(thing in test) { test[thing] = $4 }
END {
  for (thing in kinds) if (!(thing in test)) { print "MISSING\t" thing | "sort"; missing++ }
  close("sort")
  for (thing in kinds) if (thing in test) { print thing "\t" test[thing] | "sort"; used[kinds[thing]]++ }
  close("sort")
  for (kind in known) print kind " " used[kind] + 0 " of " known[kind] | "sort | paste -sd, | sed \"s/,/, /g\""
  close("sort | paste -sd, | sed \"s/,/, /g\"")
  exit missing > 0 || length(known) == 0
}
