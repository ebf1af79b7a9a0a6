# Prints what is wrong, then whether nothing is: jq -e -r --slurpfile rules rules.json -f check.jq machine.json
def faults($rule):
    . as $device
    | if $device == null then "missing"
      else
          (select(.type != $rule.type) | "type"),
          ($rule.patterns | to_entries[] | . as {$key, $value}
              | select($device[$key] // "" | test("^" + $value + "$") | not) | $key),
          ($rule.ranges | to_entries[] | . as {$key, value: [$low, $high]}
              | select($device[$key] | . == null or . < $low or . > $high) | $key)
      end;

. as $machine
| [$rules[0] | to_entries[] | . as {$key, $value} | $machine[$key] | faults($value) | "\($key): \(.)"]
| .[], length == 0
