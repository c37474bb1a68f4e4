// IdleGlyphData.h: the picture in the menu bar while no audio runs.
#pragma once

#include <string_view>

namespace velmora {

/// A PNG of 60 x 32 pixels, 8-bit RGBA, black on nothing, in base64: the middle of
/// icons/app.velmora.Velmora-idle-symbolic.svg.
inline constexpr std::string_view idleGlyphPng =
    "iVBORw0KGgoAAAANSUhEUgAAADwAAAAgCAYAAABO6BuSAAAAFXRFWHRUaXRsZQBWZWxtb3JhIGF0IHJlc3QOMCXN"
    "AAADqElEQVR4nOVZT0gWQRR/qCRJejHR0u8gktkxO3XoENEt6mSJGEGFHiP/UKZQQVihFh0LO5SGZV0Kb0GHCDpV"
    "R1MKoawU9ZJRGCm91/6W3o67+82680nQD37wZubNm/f7dmZ2Zr88+s+Qtw5jFDD3MPuYz5gTzEVwAnV98CnIdTK5"
    "FFzE7GLOMJ8zO5h7mbXMTWAt6jrgM4M+RblKKleCG5iTzF5maYJ+pegziRjO4VqwxLvMHGVWhrS/YY4wr4EjqDNR"
    "iRi9rnN0GSyfeZ951qifI2/KZpj1zCZmO9iEugx85oy+XYjpLE+Xgi/R6mkoT7GGOcCcjuk7DZ8a9NFoQGwncCVY"
    "ktJP9iezmbynuJggziL6HEUMH13kaE3bCj5A3g46A1tDdtTrRt1x5r0UeQ0zTxh1MsbGBHmFwlbwILMcHDTaTlFw"
    "g5IpmUasj2EKTu9KjGWbVyhsBZdH2HJQaFdl2XQuWMa0wUUKbmQyVr5FXpFIu4Z3U/A9e5WSrdls+IqYPjZjzDVD"
    "C068HhgHjfIDo1zNbAGrY+LE+Y0a5UOWuYXq0YITrwfGLmXLAUK/eo4xx5k3wXHUmcjm95GCh5N6y9xC9WjBidcD"
    "BTert8qWpyTJF6q6QtRVr8FvImLMOITqSbuGtyr7i7L3U1CEj0K0JfX7rGxbwaFYj+vhP4W0gvUvv0XZT5lLIf5L"
    "aEvqp2fSp4Q5BqAFz0bYcdCD1yl7itlKQTFit6Atqd/2iDHjEKpHCz6JhlnYNnil7J3MKlW+w9xBnqBW2HdDYmTz"
    "yyC2j9eWuYXq0YLHmBXgmGXQJ0b5iFGWp3QLnKJoxPkdNsqPLXML1ZN2Db9kLqjyGWZxypgaJRS8hc1jzDXDVnDU"
    "+v5F3j3WRxm5PUufJ+846UPGWrbIKxK2guPW9w0KbiRt5N2F06IZsXxMYyzbvEJhKzhufX9nnjbqblM60c2IoSFj"
    "/EiQVyhcHTweMq+o8gbmEHlTMMmaLkGfIcTwIR8GH6XM8Q9cnrS6yROuIVPyPXn32KpVPf4iA593FJzGhJg9jnJ0"
    "KniF2Uje09CQjayfvFuPvEPl0+wAOIK6D/ApM/r2IuaKqyRdn6UlsXPkvTvDTkRygBABbWAjBQ8VPqSvfLTrJodi"
    "Bbm6PMg0lL9R5GvjQhZfjXn02UaO1qyJXN6WZPeWjUzuovJHmUxZ/8+0b6D/Z1o/fCrQx9yNnWE9rodyUHjB7GTu"
    "I++SUQzWoa4TPssRMZzhN+th3kHDkRmZAAAAAElFTkSuQmCC";
static_assert(idleGlyphPng.size() == 1368);

} // namespace velmora
