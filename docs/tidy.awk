# What mandoc -Tlint finds in scdoc's output: paragraph macros beside a heading or another one, which say nothing, and
# lines of more than 80 characters.
function wrap(text,   words, count, i, line) {
    count = split(text, words, " ")
    line = words[1]
    for (i = 2; i <= count; i++) {
        if (length(line) + 1 + length(words[i]) > 80) {
            print line
            # A line that begins like a macro would be taken for one.
            line = (words[i] ~ /^[.']/ ? "\\&" : "") words[i]
        } else {
            line = line " " words[i]
        }
    }
    print line
}
/^\.P$/ { pending = 1; next }
/^\.SH|^\.SS|^\.TH|^\.RE/ { pending = 0; print; after = ($1 != ".RE"); next }
{
    if (pending && !after) print ".P"
    pending = 0
    after = /^\.RS/ ? after : 0
}
/^\.nf/ { literal = 1 }
/^\.fi/ { literal = 0 }
/^[^.]/ && !literal && length($0) > 80 { wrap($0); next }
{ print }
