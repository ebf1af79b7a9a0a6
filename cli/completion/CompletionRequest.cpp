#include "cli/completion/CompletionRequest.h"

#include "cli/completion/BashLine.h"
#include "cli/completion/Completion.h"

namespace vrx::cli {

namespace {

const char* directiveFor(Completion::Files files) noexcept {
    switch (files) {
        case Completion::Files::Any: return "files\n";
        case Completion::Files::Xml: return "xml\n";
        case Completion::Files::Folders: return "folders\n";
        default: return "words\n";
    }
}

std::string answerWords(const CLI::App& root, const std::vector<std::string>& words, Session& session) {
    const Completion completion = completionOf(root, words, session);
    std::string answer = directiveFor(completion.files);
    for (const Candidate& candidate : completion.candidates) {
        answer += candidate.word + (candidate.text.empty() ? "" : "\t" + candidate.text) + '\n';
    }
    return answer;
}

std::string answerBash(const CLI::App& root, const std::string& typed, const std::string& replaced, Session& session) {
    BashLine line(typed);
    line.words.erase(line.words.begin());  // the program
    const Completion completion = completionOf(root, line.words, session);
    const std::size_t start = line.lastStart + (line.openQuote == 0 ? 0 : 1);
    const std::size_t kept = typed.size() - std::min(typed.size(), replaced.size() + start);
    std::string answer = directiveFor(completion.files);
    for (const Candidate& candidate : completion.candidates) {
        const std::string word = bashQuoted(candidate.word, line.openQuote);
        answer += word.substr(std::min(kept, word.size())) + '\n';
    }
    return answer;
}

}  // namespace

std::string completionAnswer(const CLI::App& root, const std::vector<std::string>& question, Session& session) {
    if (question.size() == 3 && question[0] == "bash") {
        return answerBash(root, question[1], question[2], session);
    }
    return answerWords(root, {question.begin() + (question.empty() ? 0 : 1), question.end()}, session);
}

}  // namespace vrx::cli
