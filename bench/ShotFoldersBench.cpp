/// Is there a shot of this name? Shots are folders, so these are questions to the disk, in shot paths of ten and of
/// 100,000 shots.

#include <ctime>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "Beside.h"

namespace {

int const nQuestions = 1000;

std::string const shotWord = "Shot";

std::string shotName(char series, int number)
{
    return series + std::to_string(100000 + number);
}

/// A question as its several askers need it.
struct Question {
    Question(std::string const &shots, std::string const &word, std::string const &shot)
        : native(Beside::Native(shots + '/' + word + shot)), path(Beside::Path(shots + '/' + word + shot)),
          name(shot.c_str())
    {
    }

    std::string native;
    DString path;
    DString name;
};

using Questions = std::vector<Question>;

/// An experiment with so many shots, and questions that go all over their names.
struct ShotPath {
    void Make(std::string const &experimentName, int n);

    Questions Ask(std::string const &word, char series) const;

    void Change() const;
    void BecomeOld() const;

    std::string folder;
    int nShots = 0;
    Experiment experiment;
    Questions exact, otherCase, missing;
};

void ShotPath::Make(std::string const &experimentName, int n)
{
    folder = experimentName + "/Shots";
    nShots = n;
    Beside::MakeFolder(experimentName);
    Beside::MakeFolder(folder);
    for (int i = 0; i < n; ++i) Beside::MakeFolder(folder + '/' + shotWord + shotName('A', i));
    experiment.SetExperimentFolder(Beside::Path(experimentName));
    exact = Ask(shotWord, 'A');
    otherCase = Ask("sHOT", 'a');
    missing = Ask(shotWord, 'B');
}

Questions ShotPath::Ask(std::string const &word, char series) const
{
    Questions questions;
    for (int i = 0; i < nQuestions; ++i) questions.emplace_back(folder, word, shotName(series, i * 7919 % nShots));
    return questions;
}

/// A new shot comes, and goes again: nothing known of the folder holds any more.
void ShotPath::Change() const
{
    std::string const shot = folder + "/ShotNew";
    Beside::MakeFolder(shot);
    Beside::Require(rmdir(Beside::Native(shot).c_str()) == 0);
}

/// Waits until the last change is a second ago.
void ShotPath::BecomeOld() const
{
    struct stat info;
    Beside::Require(stat(Beside::Native(folder).c_str(), &info) == 0);
    auto const age = [&] {
        timespec now;
        clock_gettime(CLOCK_REALTIME, &now);
        return static_cast<double>(now.tv_sec - info.st_mtim.tv_sec) +
               static_cast<double>(now.tv_nsec - info.st_mtim.tv_nsec) * 1e-9;
    };
    while (age() < 1) usleep(10000);
}

ShotPath few;
ShotPath many;

void prepare()
{
    few.Make("Few", 10);
    many.Make("Many", 100000);
}

// ---- Askers. Each wants one answer to all questions. ----

using Asker = std::function<void(ShotPath const &shots, Questions const &questions, bool answer)>;

void askFolder(ShotPath const &, Questions const &questions, bool answer)
{
    for (Question const &question : questions) {
        DString path(question.path);
        Beside::Require(FolderExists(path) == answer);
    }
}

void askGroup(ShotPath const &shots, Questions const &questions, bool answer)
{
    for (Question const &question : questions)
        Beside::Require((shots.experiment.GuessPathFromShot(question.name) >= 0) == answer);
}

void askBare()
{
    for (Question const &question : many.exact) {
        struct stat info;
        Beside::Require(stat(question.native.c_str(), &info) == 0);
    }
}

// ---- Rows ----

double const sameCost = 1.25;

/// Rows for one way to ask for a spelling that isn't on the disk, beside one that is. Of that nothing is promised but
/// that a folder is read once and not for each question.
void declareSpelling(std::string const &what, Asker const &ask, Questions const &questions, bool answer)
{
    using namespace Beside;
    std::string const unit = "question";
    auto const asking = [&] { return Work([=, &questions] { ask(many, questions, answer); }).Per(nQuestions); };
    Work const bare = Work(askBare).Per(nQuestions);
    auto const askBefore = [=, &questions] {
        many.BecomeOld();
        ask(many, {questions.front()}, answer);
    };
    auto const changeBefore = [] {
        many.Change();
        many.BecomeOld();
    };
    Measure(what + ", in a folder that was asked for before, beside stat", unit, Unbounded, asking().After(askBefore),
            bare);
    Measure(what + ", the first thousand in an old folder, beside stat", unit, Unbounded,
            asking().After(changeBefore).Times(1), bare);
    Measure(what + ", a thousand right after a change, beside stat", unit, Unbounded,
            asking().After([] { many.Change(); }).Times(1), bare);
}

void declareFor(std::string const &operation, Asker const &ask)
{
    using namespace Beside;
    std::string const unit = "question";
    auto const exact = [&](ShotPath const &shots) {
        return Work([ask, &shots] { ask(shots, shots.exact, true); }).Per(nQuestions);
    };
    Measure(operation + ", as on the disk, beside stat", unit, 3, exact(many), Work(askBare).Per(nQuestions));
    Measure(operation + ", as on the disk, among 100,000 beside among 10", unit, sameCost, exact(many), exact(few));
    declareSpelling(operation + ", in another case", ask, many.otherCase, true);
    declareSpelling(operation + ", missing", ask, many.missing, false);
}

void declare()
{
    declareFor("FolderExists", askFolder);
    declareFor("GuessPathFromShot", askGroup);
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Looking for shots", prepare, declare);
}
