// A host without a window: calls and reads what needs none.

#include <stdio.h>

#include <vornik/vornik.h>

int main()
{
    Mesh mesh;
    mesh.setName("Box");
    printf("%s %d\n", mesh.name, vrkSelectedRasterizer);
    return 0;
}
