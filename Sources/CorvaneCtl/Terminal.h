// Standard output and standard error of corvanectl: results go to the one, messages and progress to the other. Text
// that came from a file or a user goes through visibleText() first, except where a script reads it. Main thread.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <optional>

namespace corvane::ctl {

// Opens the null device in place of standard streams that the program was started without, so that no file of ours gets
// one of their numbers, and has a closed pipe reported as an error of writing instead of ending the program.
void prepareStandardStreams();

class Terminal {
public:
    Terminal();

    [[nodiscard]] bool isOutputTerminal() const { return m_outputTerminal; }
    // Whether lines on standard error can be redrawn in place.
    [[nodiscard]] bool canRedraw() const { return m_canRedraw; }
    // Whether a question can be asked and answered.
    [[nodiscard]] bool canAsk() const;

    // To standard output, at once. A failure is kept for finish().
    void print(const QString& text);
    void print(const QByteArray& bytes);
    // A result that is text of unknown origin: shown safely on a terminal, as it is elsewhere.
    void printForeign(const QString& text);

    // "corvanectl: text" to standard error.
    void complain(const QString& text);
    // A line of its own to standard error.
    void say(const QString& text);

    // A line that shows how far a long operation is: redrawn in place on a terminal, elsewhere a new line every few
    // seconds. The last one is wiped off a terminal by clearProgress(), and by any message.
    void showProgress(double fraction, std::optional<double> elapsedSeconds, const QString& message);
    // The same for any one line, cut to the width; only where lines can be redrawn.
    void showLine(const QString& text);
    void clearProgress();

    // Asks on standard error, reads a line from standard input. True for "y" and "yes" alone.
    [[nodiscard]] bool confirm(const QString& question);

    // Whether standard output takes nothing more, for a command that prints for ever.
    [[nodiscard]] bool hasLostOutput() const { return m_outputError != 0; }
    // The exit status in view of what became of the output: `status`, or a complaint and a failure if some of it was
    // lost. A reader who has gone away ends the program in the customary way, by SIGPIPE.
    [[nodiscard]] int finish(int status);

private:
    bool m_outputTerminal;
    bool m_canRedraw;
    bool m_progressShown = false;
    QElapsedTimer m_sinceProgress;
    int m_outputError = 0; // errno of the first failed write
};

} // namespace corvane::ctl
