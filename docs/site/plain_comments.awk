# Doxygen's input filter for the public headers, whose comments are plain text for a reader of the header:
#
# - The first comment of a file becomes the file's documentation.
# - Lines that are indented by two spaces more than their text are a block of code or of literal text.
# - A comment above several declarations without a blank line between them belongs to each of them, but for what
#   overrides a function of a base class, whose comment it has.
# - A comment in a class that is followed by a blank line introduces the members up to the next one: its first sentence is
#   their title.
# - The comment of a class refers to that of its file, which has the rules for threads and failures.
# - Backslashes and the other characters that are commands to Doxygen stand for themselves.

function flush_literal(    i, cpp) {
  if (!literals) return
  for (i = 1; i <= literals; i++) if (literal[i] ~ /kdx::/) cpp = 1
  print indentation "/// " (cpp ? "\\code{.cpp}" : "\\code{.unparsed}")
  for (i = 1; i <= literals; i++) print indentation "///" literal[i]
  print indentation "/// \\endcode"
  literals = 0
}

# Escapes what Doxygen would interpret, except between backticks.
function plain(text,    pieces, count, i, result) {
  count = split(text, pieces, "`")
  for (i = 1; i <= count; i++) {
    if (i % 2) {
      gsub(/\\/, "\\\\&", pieces[i])
      gsub(/[<>@#%]/, "\\\\&", pieces[i])
    }
    result = result (i > 1 ? "`" : "") pieces[i]
  }
  return result
}

function comment_line(text) {
  if (text ~ /^   +[^ ]/ && !in_list) {
    literal[++literals] = text
    return
  }
  if (literals && text ~ /^ *$/) {
    flush_literal()
    print indentation "///"
    return
  }
  flush_literal()
  if (text ~ /^ *- /) in_list = 1
  if (text ~ /^ *$/) in_list = 0
  print indentation "///" plain(text)
}

# The introduction of the file.
NR == 1 {
  print "/// \\file"
  introduction = 1
  header = FILENAME
  sub(/.*\/kdxcommon\//, "kdxcommon/", header)
}
introduction && /^\/\// { comment_line(substr($0, 3)); next }
introduction { flush_literal(); introduction = 0; in_list = 0 }

{ match($0, /^ */); indentation = substr($0, 1, RLENGTH); code = substr($0, RLENGTH + 1) }

# The introduction of a group of members. Any other comment is left alone.
function end_group() {
  if (grouped) print "  /// @}"
  grouped = 0
}
function print_section(    text, i, end) {
  for (i = 1; i <= sections; i++) text = text (i > 1 ? " " : "") section[i]
  end = index(text, ". ")
  if (!end) end = length(text) + (text ~ /\.$/ ? 0 : 1)
  end_group()
  print "  /// \\name " plain(substr(text, 1, end - 1))
  if (end + 2 <= length(text)) print "  ///\n  /// " plain(substr(text, end + 2))
  print "  /// @{"
  grouped = 1
}
code ~ /^(public|protected|private):/ || /^}/ { end_group(); hidden = code ~ /^private/ }
code ~ /^\/\/ / && indentation == "  " && !hidden { section[++sections] = substr(code, 4); next }
sections {
  if (code == "") print_section()
  else for (i = 1; i <= sections; i++) print "  // " section[i]
  sections = 0
}

# A comment above a declaration.
code ~ /^\/\/\/($|[^<])/ {
  if (!in_comment) comments = 0
  in_comment = 1
  comment[++comments] = substr(code, 4)
  next
}

function print_comment(    i) {
  in_list = 0
  for (i = 1; i <= comments; i++) comment_line(comment[i])
  flush_literal()
}

in_comment { in_comment = 0; fresh = 1 }
/^ *$/ && !depth { comments = 0 }

# The first line of a declaration.
!inside && code != "" && code !~ /^(\/\/|#)/ {
  shares = code !~ /^~|^virtual ~|= (delete|default);| override|\/\/\/<|^(friend|private:|public:|protected:|}|template|extern)/
  if (fresh || (comments && shares)) {
    print_comment()
    if (/^(class|struct) .*{$/) print "///\n/// Threads, failures, exceptions: " header
  } else if (code ~ /= delete;/) print indentation "/// Deleted."
  else if (code ~ /operator(==|<=>).*= default;/) print indentation "/// Compares field by field, in the order of declaration."
  else if (code ~ /= default;/) print indentation (code ~ /const/ ? "/// Copies the object." : "/// The default constructor.")
  fresh = 0
  if (code ~ /^(class|struct|enum|namespace|template|public:|private:|protected:|})/) comments = 0
  inside = 1
}
# Where the declaration ends.
{
  line = $0
  sub(/\/\/.*$/, "", line)
  if (code !~ /^(class|struct|enum|namespace)/) {
    braces = line
    depth += gsub(/[({]/, "", braces) - gsub(/[)}]/, "", braces)
  }
  if (depth < 0 || line ~ /^}/) depth = 0
  if (line ~ /^ *$/ || code ~ /^#/ || (depth == 0 && line ~ /[;}{:] *$/)) inside = 0
  if ((at = index($0, "///<")) > 0) print substr($0, 1, at + 3) plain(substr($0, at + 4))
  else print
}
