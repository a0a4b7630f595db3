#include "apps/vornik/view/consoletext.h"

#include <algorithm>
#include <cctype>

enum
{
    mostLines = 2000,
    mostHistory = 200,
    longestLine = 255 ///< that the engine's console takes
};

void ConsoleText::append(const std::string& text)
{
    const int before = static_cast<int>(wrapped.size());
    for (size_t from = 0; from < text.size();)
    {
        const size_t end = std::min(text.find('\n', from), text.size());
        if (!lineIsOpen)
            lines.emplace_back();
        lines.back().append(text, from, end - from);
        lineIsOpen = end == text.size();
        from = end + 1;
    }
    while (lines.size() > mostLines)
        lines.pop_front();
    wrap();
    if (scrolled > 0) // what is read stays where it is
        scroll(static_cast<int>(wrapped.size()) - before);
}

void ConsoleText::endLine()
{
    if (lineIsOpen)
        append("\n");
}

void ConsoleText::clear()
{
    lines.clear();
    wrapped.clear();
    lineIsOpen = false;
    scrolled = 0;
}

void ConsoleText::setSize(int newColumns, int newRows)
{
    newColumns = std::max(newColumns, 1);
    rows = std::max(newRows, 1);
    if (newColumns != columns)
    {
        columns = newColumns;
        wrap();
    }
    scroll(0);
}

// Tabs go to the next multiple of eight; what else can't be shown becomes a question mark.
static std::string shown(const std::string& line)
{
    std::string text;
    for (const char c : line)
        if (c == '\t')
            text.append(8 - text.size() % 8, ' ');
        else if (c >= ' ' && c <= '~')
            text += c;
        else if (c != '\r')
            text += '?';
    return text;
}

void ConsoleText::wrapLine(const std::string& line)
{
    const std::string text = shown(line);
    const size_t width = static_cast<size_t>(columns);
    size_t from = 0;
    do
    {
        wrapped.push_back(text.substr(from, width));
        from += width;
    } while (from < text.size());
}

void ConsoleText::wrap()
{
    wrapped.clear();
    for (const std::string& line : lines)
        wrapLine(line);
}

const std::string& ConsoleText::row(int index) const
{
    static const std::string none;
    const int at = static_cast<int>(wrapped.size()) - scrolled - rows + index;
    return at >= 0 && at < static_cast<int>(wrapped.size()) ? wrapped[static_cast<size_t>(at)] : none;
}

int ConsoleText::rowsAbove() const
{
    return std::max(static_cast<int>(wrapped.size()) - scrolled - rows, 0);
}

void ConsoleText::scroll(int by)
{
    const int most = std::max(static_cast<int>(wrapped.size()) - rows, 0);
    scrolled = std::clamp(scrolled + by, 0, most);
}

void ConsoleText::type(const std::string& text)
{
    for (const char c : text)
        if (c >= ' ' && c <= '~' && typed.size() < longestLine)
            typed.insert(static_cast<size_t>(position++), 1, c);
}

// Up and down walk through the history; the line that isn't entered yet waits behind its end.
void ConsoleText::recall(int step)
{
    const size_t count = history.size();
    if ((step < 0 && recalled == 0) || (step > 0 && recalled == count))
        return;
    if (recalled == count)
        unsent = typed;
    recalled = step < 0 ? recalled - 1 : recalled + 1;
    typed = recalled == count ? unsent : history[recalled];
    position = static_cast<int>(typed.size());
}

bool ConsoleText::press(EditKey key)
{
    const int length = static_cast<int>(typed.size());
    switch (key)
    {
    case EditKey::left:
        position = std::max(position - 1, 0);
        break;
    case EditKey::right:
        position = std::min(position + 1, length);
        break;
    case EditKey::home:
        position = 0;
        break;
    case EditKey::end:
        position = length;
        break;
    case EditKey::backspace:
        if (position > 0)
            typed.erase(static_cast<size_t>(--position), 1);
        break;
    case EditKey::erase:
        if (position < length)
            typed.erase(static_cast<size_t>(position), 1);
        break;
    case EditKey::up:
        recall(-1);
        break;
    case EditKey::down:
        recall(1);
        break;
    case EditKey::pageUp:
        scroll(std::max(rows - 1, 1));
        break;
    case EditKey::pageDown:
        scroll(-std::max(rows - 1, 1));
        break;
    case EditKey::complete:
        completeWord();
        break;
    case EditKey::clearLine:
        typed.clear();
        position = 0;
        break;
    case EditKey::enter:
        return true;
    case EditKey::none:
        break;
    }
    return false;
}

std::string ConsoleText::takeLine()
{
    std::string line = std::move(typed);
    typed.clear();
    position = 0;
    unsent.clear();
    if (!line.empty() && (history.empty() || history.back() != line))
        history.push_back(line);
    if (history.size() > mostHistory)
        history.erase(history.begin());
    recalled = history.size();
    scrolled = 0;
    return line;
}

std::string ConsoleText::wordAtCursor() const
{
    const size_t end = static_cast<size_t>(position);
    const size_t space = end == 0 ? std::string::npos : typed.rfind(' ', end - 1);
    const size_t begin = space == std::string::npos ? 0 : space + 1;
    return typed.substr(begin, end - begin);
}

static char upper(char c)
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

// How many characters two texts share at their beginning, without regard to case.
static size_t sharedLength(const std::string& a, const std::string& b)
{
    size_t length = 0;
    while (length < a.size() && length < b.size() && upper(a[length]) == upper(b[length]))
        ++length;
    return length;
}

// One word that fits is put in whole; of several as much as they share. When that is nothing, they are
// listed.
void ConsoleText::completeWord()
{
    const std::string word = wordAtCursor();
    std::vector<const std::string*> fits;
    for (const std::string& candidate : candidates)
        if (!candidate.empty() && sharedLength(candidate, word) == word.size())
            fits.push_back(&candidate);
    if (fits.empty())
        return;

    size_t shared = fits[0]->size();
    for (const std::string* candidate : fits)
        shared = std::min(shared, sharedLength(*candidate, *fits[0]));
    std::string completed = fits[0]->substr(0, shared);
    if (fits.size() == 1 && completed.back() != '/')
        completed += ' ';
    if (completed.size() > word.size())
    {
        const size_t begin = static_cast<size_t>(position) - word.size();
        if (typed.size() - word.size() + completed.size() > longestLine)
            return;
        typed.replace(begin, word.size(), completed);
        position = static_cast<int>(begin + completed.size());
        return;
    }
    std::string list;
    for (const std::string* candidate : fits)
        list += *candidate + "  ";
    endLine();
    append(list + "\n");
}
