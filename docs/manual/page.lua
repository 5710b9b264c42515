-- SPDX-License-Identifier: GPL-3.0-or-later

-- Makes a page of the manual of its source: links lead to pages instead of sources, and the first
-- heading is the title.

local title

local function header(heading)
  if heading.level == 1 and not title then
    title = pandoc.utils.stringify(heading)
  end
end

local function link(element)
  if not element.target:match("^%a+:") then
    element.target = element.target:gsub("^%.%./", ""):gsub("%.md$", ".html"):gsub("%.md#", ".html#")
    return element
  end
end

local function finish(document)
  document.meta.pagetitle = title == "Quorvel" and title or title .. " - Quorvel"
  if title ~= "Quorvel" then
    document.meta.home = pandoc.Link("Contents", "index.html")
  end
  return document
end

return {{Header = header, Link = link}, {Pandoc = finish}}
