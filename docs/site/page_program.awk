# Makes a program of the examples on a page of the guide, the blocks that begin with ```cpp. Each runs as a function of
# its own; one that has its own main() keeps it under another name. With want=output prints instead what the program
# prints: for each example the block that begins with ```output and follows it.

BEGIN { if (want != "output") print "#include <kdxcommon/kdxcommon.h>\n#include <cstdio>\n#include <memory>" }

/^```cpp$/ {
  begin = "#line " FNR + 1 " \"" page "\"\n"
  body = plain = includes = ""
  whole = 0
  block = "cpp"
  next
}
/^```output$/ { block = "output"; next }
/^```$/ && block == "cpp" {
  wholes[++examples] = whole
  if (want == "output") print "example " examples
  else if (whole) print begin body
  else print includes "static void example" examples "() {\n" begin plain "}"
}
/^```/ { block = "" ; next }

block == "cpp" {
  whole += sub(/^int main\(\)/, "static int example" examples + 1 "()")
  body = body $0 "\n"
  if (/^#include/) includes = includes $0 "\n"
  plain = plain (/^#include/ ? "" : $0) "\n"
}
block == "output" && want == "output"

END {
  if (want == "output") exit
  print "int main() {\n  std::setbuf(stdout, nullptr);"
  for (i = 1; i <= examples; i++) {
    print "  std::puts(\"example " i "\");"
    print wholes[i] ? "  if (const int status = example" i "()) return status;" : "  example" i "();"
  }
  print "}"
}
