// treeWriter.h - writes a tree of records and arrays as JSON or CBOR, piece by piece: what is
// written is never held as a whole.
#ifndef PLOTWERK_FILES_TREEWRITER_H
#define PLOTWERK_FILES_TREEWRITER_H

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// Between beginRecord and endRecord stand as many fields as were announced, each a key and a value;
// between beginArray and endArray as many values.
class TreeWriter {
  public:
    // CBOR when binary, without its mark.
    TreeWriter(std::ostream &to, bool binaryKind) : stream(to), binary(binaryKind) {}
    ~TreeWriter() { flush(); }
    TreeWriter(const TreeWriter &) = delete;
    TreeWriter &operator=(const TreeWriter &) = delete;

    void beginRecord(std::size_t count);
    void endRecord() { end('}'); }
    void beginArray(std::size_t count);
    void endArray() { end(']'); }
    void key(std::string_view name); // of letters alone
    void endLine() { pending += '\n'; }

    void write(bool value);
    void write(int value);
    void write(std::uint64_t value);
    void write(double value);
    void write(const std::string &text); // as utf8Of makes it
    void write(const std::vector<double> &values);

  private:
    void separate();
    void end(char bracket);
    void head(unsigned kind, std::uint64_t argument);
    template<class Number> void append(Number bits);
    void appendCbor(double value);
    void appendJson(double value);
    void makeRoom();
    void flush();

    std::ostream &stream;
    const bool binary;
    bool first = true; // in its record or array, or behind its key
    std::string pending;
};

} // namespace plotwerk

#endif
