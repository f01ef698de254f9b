#include "tool/input/spooled_texts.h"

#include "tool/console/arguments.h"

namespace marvane::tool {

void SpooledTexts::Add(std::size_t number, std::string_view text)
{
    if (number >= texts_.size())
        texts_.resize(number + 1);
    texts_[number].Rest += text;
    held_ += text.size();
    if (held_ > mostHeld_)
        Spool();
}

void SpooledTexts::Spool()
{
    if (!file_)
        file_ = platform::TemporaryFile::Make();
    for (Text& text : texts_) {
        if (text.Rest.empty())
            continue;
        const Part part = {file_ ? file_->Size() : 0, static_cast<std::uint32_t>(text.Rest.size())};
        if (!file_ || !file_->Append(text.Rest))
            throw Trouble("the temporary folder can't be written");
        text.Parts.push_back(part);
        text.Rest = std::string(); // Its memory too.
    }
    held_ = 0;
}

void SpooledTexts::Read(std::size_t number, const std::function<void(std::string_view)>& give) const
{
    if (number >= texts_.size())
        return;
    std::vector<char> buffer;
    for (const Part& part : texts_[number].Parts) {
        buffer.resize(part.Size);
        if (file_->ReadAt(part.Begin, buffer) != part.Size)
            throw Trouble("the temporary file can't be read");
        give({buffer.data(), buffer.size()});
    }
    give(texts_[number].Rest);
}

} // namespace marvane::tool
