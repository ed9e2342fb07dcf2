// Shows what String shares and what it copies.

#include <orv/Reference>
#include <orv/String>

#include <cstdio>

using namespace orv;

int main()
{
    const String name(u"report");
    String path = name; // shares the text
    std::printf("shared: %s\n", path.getData() == name.getData() ? "yes" : "no");

    path.append(u".txt"); // the first write makes a text of its own
    std::printf("shared after append: %s\n", path.getData() == name.getData() ? "yes" : "no");

    // What goes to the heap is owned through a Reference.
    const Reference<Object> copy(path.clone());
    std::printf("%s equals its clone: %s\n", path.getBytes(), path.equals(*copy) ? "yes" : "no");

    String line;
    line.format(u"{0} of {1}", -1, u"page 1", path.getData());
    std::printf("%s\n", line.getBytes());
    return 0;
}
