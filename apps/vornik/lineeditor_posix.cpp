#include "apps/vornik/lineeditor.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <histedit.h>
#include <strings.h>
#include <unistd.h>

struct LineEditor::State
{
    std::string prompt;
    std::vector<std::string> words;
    History* history;
    EditLine* editor;

    /// The words that begin with a text.
    std::vector<std::string> completions(const std::string& start) const
    {
        std::vector<std::string> found;
        for (const std::string& word : words)
            if (strncasecmp(word.c_str(), start.c_str(), start.size()) == 0)
                found.push_back(word);
        return found;
    }

    static State* of(EditLine* editor)
    {
        void* data = nullptr;
        el_get(editor, EL_CLIENTDATA, &data);
        return static_cast<State*>(data);
    }

    static char* promptOf(EditLine* editor) { return of(editor)->prompt.data(); }
    static unsigned char complete(EditLine* editor, wint_t key);
};

// What all words have in common from their start on.
static std::string commonStart(const std::vector<std::string>& words)
{
    std::string start = words.front();
    for (const std::string& word : words)
        while (word.compare(0, start.size(), start) != 0)
            start.pop_back();
    return start;
}

unsigned char LineEditor::State::complete(EditLine* editor, wint_t /*key*/)
{
    const LineInfo* line = el_line(editor);
    const std::string start(line->buffer, line->cursor);
    const std::vector<std::string> found = of(editor)->completions(start);
    if (found.empty() || start.find(' ') != std::string::npos)
        return CC_REFRESH_BEEP;
    std::string completed = commonStart(found);
    if (found.size() == 1)
        completed += ' ';
    if (completed.size() == start.size()) // nothing to add: show the choice
    {
        std::printf("\n");
        for (const std::string& word : found)
            std::printf("%s  ", word.c_str());
        std::printf("\n");
        std::fflush(stdout);
        return CC_REDISPLAY;
    }
    el_deletestr(editor, static_cast<int>(start.size()));
    el_insertstr(editor, completed.c_str());
    return CC_REFRESH;
}

LineEditor::LineEditor(const std::string& prompt, const std::vector<std::string>& words)
    : state(new State{prompt, words, history_init(), nullptr})
{
    std::setlocale(LC_CTYPE, ""); // letters of more than one byte are edited as one
    state->editor = el_init("vornik", stdin, stdout, stderr);
    HistEvent event;
    history(state->history, &event, H_SETSIZE, 1000);
    history(state->history, &event, H_SETUNIQUE, 1);
    el_set(state->editor, EL_CLIENTDATA, state.get());
    el_set(state->editor, EL_PROMPT, State::promptOf);
    el_set(state->editor, EL_HIST, history, state->history);
    el_set(state->editor, EL_SIGNAL, 1);
    el_set(state->editor, EL_EDITOR, "emacs");
    // In wide characters: the library's copies of the narrow texts are lost at the end.
    el_wset(state->editor, EL_ADDFN, L"complete-command", L"Complete the command", State::complete);
    el_set(state->editor, EL_BIND, "\t", "complete-command", nullptr);
    el_set(state->editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_source(state->editor, nullptr); // the user's own keys, from .editrc
}

LineEditor::~LineEditor()
{
    el_end(state->editor);
    history_end(state->history);
}

bool LineEditor::isPossible()
{
    return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO);
}

bool LineEditor::read(std::string* line)
{
    int length = 0;
    const char* typed = el_gets(state->editor, &length);
    if (!typed || length <= 0)
        return false;
    line->assign(typed, static_cast<size_t>(length));
    while (!line->empty() && (line->back() == '\n' || line->back() == '\r'))
        line->pop_back();
    HistEvent event;
    if (!line->empty())
        history(state->history, &event, H_ENTER, line->c_str());
    return true;
}

void LineEditor::clearScreen()
{
    // Of the terminals in use only a "dumb" one doesn't know these.
    const char* terminal = std::getenv("TERM");
    if (!terminal || std::string(terminal) == "dumb")
        return;
    std::fputs("\x1B[H\x1B[2J", stdout);
    std::fflush(stdout);
}
