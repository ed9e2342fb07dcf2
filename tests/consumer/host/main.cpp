#include <orv/String>

int main()
{
    orv::String text(u"abc");
    text.append(u"d");
    return text.getLength() == 4 ? 0 : 1;
}
