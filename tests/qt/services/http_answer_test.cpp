#include "qt/services/http_answer.h"

#include <gtest/gtest.h>

namespace pelmarix::qt {
namespace {

/// The answer in these bytes, which come in pieces of one size.
HttpAnswer answerOf(const std::string& bytes, std::size_t pieceSize, bool ends = true) {
  HttpAnswer answer;
  for (std::size_t at = 0; at < bytes.size(); at += pieceSize)
    answer.add(std::string_view(bytes).substr(at, pieceSize));
  if (ends) answer.end();
  return answer;
}

std::optional<std::string> bodyOf(const std::string& bytes) {
  const auto bodyInPieces = [&bytes](std::size_t size) {
    HttpAnswer answer = answerOf(bytes, size);
    return answer.isComplete() ? answer.takeBody() : std::nullopt;
  };
  std::optional<std::string> body = bodyInPieces(bytes.size());
  for (const std::size_t size : {1U, 3U}) EXPECT_EQ(bodyInPieces(size), body) << bytes;
  return body;
}

const std::string head = "HTTP/1.1 200 OK\r\nServer: x\r\n";

TEST(HttpAnswer, TellsItsStatusAndHeadersInWhateverPiecesItComes) {
  const std::string bytes =
      "HTTP/1.0 404 Not here\r\nContent-TYPE:\t text/Xml; a=b \r\nLocation:/x:y\r\n\r\n";
  for (std::size_t pieceSize = 1; pieceSize <= bytes.size(); ++pieceSize) {
    const HttpAnswer answer = answerOf(bytes, pieceSize, false);
    EXPECT_EQ(answer.status(), 404);
    EXPECT_EQ(answer.header("content-type"), "text/Xml; a=b");
    EXPECT_EQ(answer.header("location"), "/x:y");
    EXPECT_EQ(answer.header("content-length"), "");
  }
}

TEST(HttpAnswer, HasNoStatusBeforeItsWholeHeadIsThere) {
  EXPECT_EQ(answerOf(head, 1, false).status(), 0);
  EXPECT_EQ(answerOf("HTTP/1.1 100 Continue\r\n\r\n" + head, 1, false).status(), 0);
}

TEST(HttpAnswer, MayEndItsLinesWithALineFeedAlone) {
  const std::string lines = "HTTP/1.1 200 OK\nContent-Type: text/xml\n";
  EXPECT_EQ(bodyOf(lines + "Content-Length: 4\n\nbody"), "body");
  EXPECT_EQ(bodyOf(lines + "\r\n\r\nbody"), "\r\nbody");
  EXPECT_EQ(bodyOf(lines + "Transfer-Encoding: chunked\n\n5\nbody\n\n0\n\n"), "body\n");
  EXPECT_EQ(answerOf(lines + "\n", 1, false).header("content-type"), "text/xml");
}

TEST(HttpAnswer, MayHaveAHeaderInSeveralLines) {
  const std::string folded =
      "HTTP/1.1 200 OK\r\n x: y\r\nContent-Type: text/xml;\r\n \ta=b:c \r\nX: y\r\n z\r\n";
  const HttpAnswer answer = answerOf(folded + "Content-Length:\r\n 4\r\n\r\nbody", 1, false);
  EXPECT_TRUE(answer.isComplete());
  EXPECT_EQ(answer.header("content-type"), "text/xml; a=b:c");
}

TEST(HttpAnswer, HasABodyOfTheLengthThatItTells) {
  EXPECT_EQ(bodyOf(head + "Content-Length: 4\r\n\r\nbody"), "body");
  EXPECT_EQ(bodyOf(head + "Content-Length: 4\r\n\r\nbody and more"), "body");
  EXPECT_EQ(bodyOf(head + "Content-Length: 0\r\n\r\n"), "");
  EXPECT_TRUE(answerOf(head + "Content-Length: 4\r\n\r\nbody", 1, false).isComplete());
}

TEST(HttpAnswer, HasABodyInChunks) {
  const std::string chunked = head + "Transfer-Encoding: Chunked\r\n\r\n";
  EXPECT_EQ(bodyOf(chunked + "4\r\nbody\r\n00A ; name=\"value\"\r\n and\r\nmore\r\n0\r\nTrailer: x\r\n\r\n"),
            "body and\r\nmore");
  EXPECT_EQ(bodyOf(chunked + "0\r\n\r\n"), "");
  EXPECT_TRUE(answerOf(chunked + "4\r\nbody\r\n0\r\n\r\n", 1, false).isComplete());
}

TEST(HttpAnswer, HasABodyThatEndsWithTheConnection) {
  EXPECT_EQ(bodyOf(head + "\r\nbody"), "body");
  EXPECT_FALSE(answerOf(head + "\r\nbody", 1, false).isComplete());
}

TEST(HttpAnswer, HasNoBodyWhereItsStatusSaysSo) {
  for (const std::string status : {"204", "304"})
    EXPECT_TRUE(answerOf("HTTP/1.1 " + status + " x\r\nContent-Length: 4\r\n\r\n", 1, false).isComplete());
}

TEST(HttpAnswer, PassesOverWhatOnlyTellsHowTheRequestFares) {
  const std::string early = "HTTP/1.1 103 Early hints\r\nContent-Length: 9\r\nLocation: /x\r\n\r\n";
  EXPECT_EQ(bodyOf(early + early + head + "Content-Length: 4\r\n\r\nbody"), "body");
  EXPECT_EQ(answerOf(early + head + "\r\n", 1).header("location"), "");
}

TEST(HttpAnswer, IsBrokenWhereverItIsCut) {
  for (const std::string& whole :
       {head + "Content-Length: 4\r\n\r\nbody",
        head + "Transfer-Encoding: chunked\r\n\r\n4;x\r\nbody\r\n0\r\nT: x\r\n\r\n"})
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_TRUE(answerOf(whole.substr(0, size), 1).isBroken()) << size;
      EXPECT_FALSE(answerOf(whole.substr(0, size), 1, false).isComplete()) << size;
    }
}

TEST(HttpAnswer, IsBrokenWhenItIsNotHttp) {
  const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n";
  for (const std::string& bytes :
       {std::string("SSH-2.0-server\r\n"), std::string("HTTP/1.\r\n"), std::string("HTTP/1.1 20x OK\r\n"),
        std::string("HTTP/1.1 099 x\r\n"), std::string("HTTP/2 200\r\n"), head + "no colon\r\n",
        head + "Content-Length: -1\r\n\r\n", head + "Content-Length: 4x\r\n\r\nbody",
        head + "Content-Length: 4\r\nContent-Length: 5\r\n\r\nbody",
        head + "Content-Length: 99999999999999999999\r\n\r\n", head + "Transfer-Encoding: gzip\r\n\r\n",
        chunked + "x\r\n", chunked + "\r\n", chunked + "-1\r\n", chunked + "4\r\nbody, more\r\n",
        chunked + "FFFFFFFFFFFFFFFFF\r\n"})
    for (const std::size_t pieceSize : {std::size_t{1}, std::size_t{1} << 20U})
      EXPECT_TRUE(answerOf(bytes, pieceSize, false).isBroken()) << bytes;
}

TEST(HttpAnswer, IsBrokenWhenAllThatCameIsMoreThanItsBound) {
  const auto many = [](const std::string& text) {
    std::string all;
    while (all.size() <= maximumAnswerSize) all += text;
    return all;
  };
  const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n";
  const std::string longLine(50'000, 'x');
  for (const std::string& bytes :
       {many("HTTP/1.1 103 " + longLine + "\r\n\r\n"), head + many("X: " + longLine + "\r\n"),
        head + "Content-Length: 99999999\r\n\r\n" + many("x"), head + "\r\n" + many("x"),
        chunked + many("1;" + longLine + "\r\nx\r\n"), chunked + "0\r\n" + many("X: " + longLine + "\r\n")}) {
    EXPECT_FALSE(answerOf(bytes.substr(0, maximumAnswerSize), 1 << 16, false).isBroken())
        << bytes.substr(0, 60);
    EXPECT_TRUE(answerOf(bytes, 1 << 16, false).isBroken()) << bytes.substr(0, 60);
  }
}

TEST(HttpAnswer, IsBrokenWhenALineHasNoEnd) {
  const std::string longLine(70'000, 'x');
  const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n";
  for (const std::string& bytes : {"HTTP/1.1 200 " + longLine, head + "X: " + longLine,
                                   chunked + "1;" + longLine, chunked + "0\r\nX: " + longLine})
    EXPECT_TRUE(answerOf(bytes, 1000, false).isBroken()) << bytes.substr(0, 60);
}

TEST(HttpAnswer, IsBrokenWhenAHeaderIsTooLongHoweverManyLinesItHas) {
  const std::string part(1000, 'x');
  for (const std::string& start : {"Location: " + part + "\r\n", " " + part + "\r\n"}) {
    std::string bytes = head + "Location: " + part + "\r\n";
    for (int line = 0; line < 60; ++line) bytes += start;
    EXPECT_FALSE(answerOf(bytes, 1 << 16, false).isBroken()) << start.front();
    for (int line = 0; line < 10; ++line) bytes += start;
    EXPECT_TRUE(answerOf(bytes, 1 << 16, false).isBroken()) << start.front();
  }
}

TEST(HttpAnswer, HasNoBodyWhenTheServerHasCompressedIt) {
  EXPECT_EQ(bodyOf(head + "Content-Encoding: br\r\nContent-Length: 4\r\n\r\nbody"), std::nullopt);
  EXPECT_EQ(bodyOf(head + "Content-Encoding: gzip\r\nContent-Length: 4\r\n\r\nbody"), std::nullopt);
  EXPECT_EQ(bodyOf(head + "Content-Encoding: identity\r\nContent-Length: 4\r\n\r\nbody"), "body");
  EXPECT_EQ(bodyOf("HTTP/1.1 204 x\r\nContent-Encoding: gzip\r\n\r\n"), "");
}

}  // namespace
}  // namespace pelmarix::qt
