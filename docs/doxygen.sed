# Links between the documents as doxygen resolves them: to pages rather than headings, to headers by name, and no links
# to what has no page.
s,\]\(([A-Za-z./_]*\.md)#[^)]*\),](\1),g
s,\[([^]]*)\]\((\.\./)?api/([a-z_]+\.h)\),@ref \3 "\1",g
s,\[([^]]*)\]\((\.\./)?(examples[^)]*|LICENSE)\),\1,g
