// Inside a host with a console, a function and a variable of its own.
#include "vornik/vornik.h"

void show(const char* text);
void clearDisplay();
void quit();
int jump(int height);
extern float speed;

void frame(Scene& scene, VRKWindow window, Console* console, const char* typedLine)
{
    {
        // block
    }
}
